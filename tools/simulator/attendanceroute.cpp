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
    constexpr int oversizeBytes = 2'000'000; // the kiosk takes 1 MiB

    /// What is wrong with the document, or an empty text and the record that it holds.
    QString read(const QByteArray &document, AttendanceRecord *record)
    {
        QXmlStreamReader reader(document);
        if (reader.readNext() != QXmlStreamReader::StartDocument
            || reader.documentVersion() != QLatin1String("1.0"))
            return QStringLiteral("The document lacks the XML declaration");
        if (!reader.readNextStartElement() || reader.name() != QLatin1String("attendance"))
            return QStringLiteral("The document's root is not attendance");
        QStringList names;
        QStringList values;
        while (reader.readNextStartElement()) {
            names += reader.name().toString();
            values += reader.readElementText();
        }
        while (!reader.atEnd())
            reader.readNext();
        if (reader.hasError())
            return QStringLiteral("The document is broken: %1").arg(reader.errorString());

        const bool hasLag = names.value(1) == QLatin1String("lag");
        const auto expected = hasLag ? QStringLiteral("clientTime lag locationId transponderId")
                                     : QStringLiteral("clientTime locationId transponderId");
        const auto separator = QStringLiteral(" ");
        if (names.join(separator) != expected)
            return QStringLiteral("Not \"%1\" but \"%2\"").arg(expected, names.join(separator));

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
            : QStringLiteral("A value can not be read: %1").arg(values.join(separator));
    }

    /// @param holder empty for a card that is nobody's
    QByteArray response(const AttendanceRecord &record, const QString &holder)
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

Answer AttendanceRoute::answer(const QString & /*path*/, const RecordedRequest &request)
{
    if (request.method != "POST")
        return textAnswer(405, QStringLiteral("Attendance is logged by POST"));
    if (request.headers.value("content-type") != xmlType)
        return textAnswer(415, QStringLiteral("A record is application/xml"));
    const QList<QByteArray> tokens = request.headers.values("x-plenar-token");
    const QString forgery = tokens.size() == 1 ? m_verifier.complaint(tokens.first(), request.body)
                                               : QStringLiteral("A record needs exactly one token");
    if (!forgery.isEmpty())
        return textAnswer(403, forgery);
    AttendanceRecord record;
    const QString complaint = read(request.body, &record);
    if (!complaint.isEmpty())
        return textAnswer(400, complaint);

    record.acceptedAt = QDateTime::currentDateTime();
    Answer good { 200, responseType, response(record, m_holders.nameOf(record.transponderId)) };
    good.takeEffect = [this, record] {
        const std::lock_guard lock(m_mutex);
        m_records.append(record);
    };
    return good;
}

Answer AttendanceRoute::spoil(Answer good, Fault fault, const RecordedRequest & /*request*/)
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
