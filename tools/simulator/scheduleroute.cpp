// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/scheduleroute.h"

#include "simulator/sampleday.h"

#include <QFile>

namespace simulator {
namespace {

    constexpr auto xmlType = "application/xml; charset=utf-8";
    constexpr int hugeBytes = 50'000'000;
    constexpr int oversizeBytes = 68'000'000; // the kiosk accepts 64 MiB

    constexpr auto otherDocument = R"(<?xml version="1.0" encoding="UTF-8"?>
<menu><day>Montag</day><dish price="3.20">Linseneintopf mit Brötchen</dish></menu>
)";

    constexpr auto unreadableDocument = R"(<?xml version="1.0" encoding="UTF-8"?>
<schedule>
  <locations>
    <location id="1" displayOrder="1"><shortName>HS 1</shortName><name>Hörsaal 1</name></location>
  </locations>
  <events>
    <event id="1">
      <start>2024-05-13T09:30:00</start>
      <end>kurz vor Mittag</end>
      <locationId>1</locationId>
      <title>Thermodynamik</title>
    </event>
  </events>
</schedule>
)";

    QByteArray entityBomb()
    {
        constexpr int levels = 9; // expands to three bytes times ten to this power
        QByteArray xml = "<?xml version=\"1.0\"?>\n<!DOCTYPE schedule [\n<!ENTITY e0 \"bum\">\n";
        for (int level = 1; level <= levels; ++level) {
            const QByteArray inner = "&e" + QByteArray::number(level - 1) + ';';
            xml += "<!ENTITY e" + QByteArray::number(level) + " \"" + inner.repeated(10) + "\">\n";
        }
        return xml + "]>\n<schedule><locations><location id=\"1\" displayOrder=\"1\"><shortName>&e"
            + QByteArray::number(levels)
            + ";</shortName><name>Hof</name></location></locations></schedule>\n";
    }

    QByteArray dayOfSize(int bytes)
    {
        const SampleDay day(QDateTime::currentDateTime());
        const int events = day.events().size();
        const double bytesPerEvent
            = double(day.toXml(2 * events).size() - day.toXml().size()) / events;
        return day.toXml(int(bytes / bytesPerEvent));
    }

} // namespace

void ScheduleRoute::setDocument(const QByteArray &xml)
{
    const std::lock_guard lock(m_mutex);
    m_document = xml;
    m_file.clear();
    m_days.clear();
}

void ScheduleRoute::setFile(const QString &path)
{
    const std::lock_guard lock(m_mutex);
    m_document.clear();
    m_file = path;
}

bool ScheduleRoute::owns(const QByteArray & /*method*/, const QString &path) const
{
    return path.startsWith(QLatin1String(pathPrefix));
}

Response ScheduleRoute::respond(const QString &path, const RecordedRequest &request)
{
    if (request.method != "GET") {
        Response refusal = textResponse(405, QStringLiteral("Use GET to fetch a schedule"));
        refusal.headers["Allow"] = "GET";
        return refusal;
    }
    const QString text = path.mid(int(qstrlen(pathPrefix)));
    const QDate date = QDate::fromString(text, Qt::ISODate);
    // Qt accepts more than ISO dates, so the date must match the text.
    if (!date.isValid() || date.toString(Qt::ISODate) != text)
        return textResponse(404, QStringLiteral("No schedule for \"%1\": not a date").arg(text));

    const std::lock_guard lock(m_mutex);
    if (!m_file.isEmpty()) {
        QFile file(m_file);
        if (!file.open(QIODevice::ReadOnly))
            return textResponse(500, QStringLiteral("%1: %2").arg(m_file, file.errorString()));
        return { 200, xmlType, file.readAll() };
    }
    return { 200, xmlType, m_document.isEmpty() ? generatedDay(date) : m_document };
}

Response ScheduleRoute::spoil(Response good, Fault fault, const RecordedRequest & /*request*/)
{
    if (fault == Fault::WrongRoot)
        good.body = otherDocument;
    else if (fault == Fault::InvalidValue)
        good.body = unreadableDocument;
    else if (fault == Fault::Huge)
        good.body = dayOfSize(hugeBytes);
    else if (fault == Fault::Oversize)
        good.body = dayOfSize(oversizeBytes);
    else if (fault == Fault::EntityBomb)
        good.body = entityBomb();
    return good;
}

QByteArray ScheduleRoute::generatedDay(const QDate &date)
{
    auto day = m_days.find(date);
    if (day == m_days.end())
        day = m_days.insert(date, SampleDay(QDateTime(date, QTime::currentTime())).toXml());
    return *day;
}

} // namespace simulator
