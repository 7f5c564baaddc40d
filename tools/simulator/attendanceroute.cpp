// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/attendanceroute.h"

#include "simulator/cardholders.h"
#include "simulator/strictforms.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <array>

namespace simulator {
namespace {

    constexpr auto xmlType = "application/xml";
    constexpr auto responseType = "application/xml; charset=utf-8";
    constexpr int noticeTimeoutMs = 8000;
    constexpr int oversizeBytes = 2'000'000; // the kiosk accepts 1 MiB

    /// Reads the record. Returns what is wrong with the document, or an empty text.
    QString read(const QByteArray &document, AttendanceRecord *record)
    {
        QXmlStreamReader reader(document);
        if (reader.readNext() != QXmlStreamReader::StartDocument
            || reader.documentVersion() != QLatin1String("1.0"))
            return QStringLiteral("The document has no XML declaration");
        if (!reader.readNextStartElement() || reader.name() != QLatin1String("attendance"))
            return QStringLiteral("The root element is not attendance");
        QStringList names;
        QStringList values;
        while (reader.readNextStartElement()) {
            names += reader.name().toString();
            values += reader.readElementText();
        }
        while (!reader.atEnd())
            reader.readNext();
        if (reader.hasError())
            return QStringLiteral("The document is not well-formed: %1").arg(reader.errorString());

        const bool hasLag = names.value(1) == QLatin1String("lag");
        const auto expected = hasLag ? QStringLiteral("clientTime lag locationId transponderId")
                                     : QStringLiteral("clientTime locationId transponderId");
        const auto separator = QStringLiteral(" ");
        if (names.join(separator) != expected)
            return QStringLiteral("Expected the elements \"%1\", not \"%2\"")
                .arg(expected, names.join(separator));

        std::array<bool, 4> good {};
        record->clientTime = isoDateTime(values.first());
        good[0] = record->clientTime.isValid();
        good[1] = !hasLag || matches(values.at(1), "-?\\d+");
        if (hasLag && good[1])
            record->lagMs = values.at(1).toLongLong(&good[1]);
        record->locationId = values.at(values.size() - 2).toInt(&good[2]);
        record->transponderId = values.last().toULongLong(&good[3]);
        good[2] = good[2] && matches(values.at(values.size() - 2), "-?\\d+");
        good[3] = good[3] && matches(values.last(), "\\d+");
        return std::all_of(good.begin(), good.end(), [](bool each) { return each; })
            ? QString()
            : QStringLiteral("Invalid value in: %1").arg(values.join(separator));
    }

    /// @param holder empty for an unassigned card
    QByteArray responseDocument(const AttendanceRecord &record, const QString &holder)
    {
        const bool isKnown = !holder.isEmpty();
        QByteArray document;
        QXmlStreamWriter writer(&document);
        const auto element = [&writer](const char *name, const QString &text) {
            writer.writeTextElement(QLatin1String(name), text);
        };
        writer.writeStartDocument();
        writer.writeStartElement(QStringLiteral("attendanceResponse"));
        element("serverTime", record.acceptedAt.toString(Qt::ISODate));
        element("clientTime", record.clientTime.toString(Qt::ISODate));
        element("name", holder);
        element("notificationType", isKnown ? QStringLiteral("INFO") : QStringLiteral("WARNING"));
        element("title", isKnown ? holder : QStringLiteral("Unbekannte Karte"));
        element("message",
                isKnown
                    ? QStringLiteral("Ihre Anwesenheit wurde um %1 Uhr erfasst.")
                          .arg(record.clientTime.toLocalTime().toString(QStringLiteral("HH:mm")))
                    : CardHolders::unknownCard(record.transponderId));
        element("timeout", QString::number(noticeTimeoutMs));
        writer.writeEndDocument();
        return document;
    }

} // namespace

AttendanceRoute::AttendanceRoute(const CardHolders &holders)
    : m_holders(holders)
{
}

QVector<AttendanceRecord> AttendanceRoute::records() const
{
    const std::lock_guard lock(m_mutex);
    return m_records;
}

bool AttendanceRoute::owns(const QByteArray & /*method*/, const QString &asked) const
{
    return asked == QLatin1String(path);
}

Response AttendanceRoute::respond(const QString & /*path*/, const RecordedRequest &request)
{
    if (request.method != "POST")
        return textResponse(405, QStringLiteral("Use POST to log attendance"));
    if (request.headers.value("content-type") != xmlType)
        return textResponse(415, QStringLiteral("The content type must be application/xml"));
    const QList<QByteArray> tokens = request.headers.values("x-plenar-token");
    const QString forgery = tokens.size() == 1 ? m_verifier.complaint(tokens.first(), request.body)
                                               : QStringLiteral("Exactly one token is required");
    if (!forgery.isEmpty())
        return textResponse(403, forgery);
    AttendanceRecord record;
    const QString complaint = read(request.body, &record);
    if (!complaint.isEmpty())
        return textResponse(400, complaint);

    record.acceptedAt = QDateTime::currentDateTime();
    Response good { 200, responseType,
                    responseDocument(record, m_holders.nameOf(record.transponderId)) };
    good.takeEffect = [this, record] {
        const std::lock_guard lock(m_mutex);
        m_records.append(record);
    };
    return good;
}

Response AttendanceRoute::spoil(Response good, Fault fault, const RecordedRequest & /*request*/)
{
    const auto timeout = "<timeout>" + QByteArray::number(noticeTimeoutMs);
    if (fault == Fault::WrongRoot)
        good.body.replace("attendanceResponse>", "attendance>");
    else if (fault == Fault::InvalidValue)
        good.body.replace(timeout, "<timeout>5s");
    else if (fault == Fault::HostileValues)
        good.body.replace("<message>", "<message>&lt;img src='http://127.0.0.1:9/'&gt;")
            .replace(timeout, "<timeout>-5");
    else if (fault == Fault::Oversize)
        good.body += QByteArray(oversizeBytes, ' ');
    return good;
}

} // namespace simulator
