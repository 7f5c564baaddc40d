// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/sampleday.h"

#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <algorithm>

// The macro does not work within a namespace. Without it the linker drops the texts.
static void initTexts()
{
    Q_INIT_RESOURCE(sampleday);
}

namespace simulator {
namespace {

    // Minutes since the midnight at the start of the day.
    constexpr int grid = 15;
    constexpr int pause = 15;
    constexpr int morning = 7 * 60 + 15;
    constexpr int firstLecture = 8 * 60 + 15; // for events that would fall into the night
    constexpr int night = 23 * 60;
    constexpr int runsSince = 45;
    constexpr int runsFor = 45;
    constexpr int nextStartsIn = 60; // after the last quarter hour, so 45 to 60 from now
    constexpr int overlapDelay = 30;

    constexpr int nowhere = -1;

    /** The free time of a room's day around its current and next event. */
    struct FreeTime
    {
        int until; ///< free from the morning until here
        int from; ///< free from here until the night

        /// Reserves time for an event and returns its start, or nowhere if the day is too short.
        int take(int minutes, bool later)
        {
            const bool fitsLater = from + minutes <= night;
            const bool fitsEarlier = until - minutes >= morning;
            if (fitsLater && (later || !fitsEarlier)) {
                const int start = from;
                from += minutes + pause;
                return start;
            }
            if (!fitsEarlier)
                return nowhere;
            const int start = until - minutes;
            until = start - pause;
            return start;
        }
    };

    /// Joins the lines of the file. Empty lines separate paragraphs.
    QString unwrapped(const QString &text)
    {
        static const QRegularExpression emptyLine(QStringLiteral("\\n\\s*\\n"));
        QStringList paragraphs = text.split(emptyLine);
        for (QString &paragraph : paragraphs)
            paragraph = paragraph.simplified();
        return paragraphs.join(QStringLiteral("\n\n"));
    }

    /// The element that the reader has just entered, as text. Leaves the reader at its end.
    QByteArray copied(QXmlStreamReader &reader)
    {
        QByteArray bytes;
        QXmlStreamWriter writer(&bytes);
        int depth = 0;
        do {
            if (reader.isCharacters()) {
                if (!reader.isWhitespace())
                    writer.writeCharacters(unwrapped(reader.text().toString()));
            } else if (!reader.isComment()) {
                writer.writeCurrentToken(reader);
                depth += reader.isStartElement() ? 1 : -1;
            }
        } while (depth > 0 && reader.readNext() != QXmlStreamReader::Invalid);
        return bytes;
    }

    QByteArray element(const char *name, const QByteArray &content)
    {
        return QByteArray("<") + name + '>' + content + "</" + name + ">\n";
    }

} // namespace

SampleDay::SampleDay(const QDateTime &now, const QVector<int> &roomIds)
{
    initTexts();
    QFile file(QStringLiteral(":/simulator/sampleday.xml"));
    file.open(QIODevice::ReadOnly);
    QXmlStreamReader reader(&file);
    reader.readNextStartElement();
    while (reader.readNextStartElement()) {
        const int id = reader.attributes().value(QLatin1String("id")).toInt();
        if (reader.name() == QLatin1String("audience"))
            m_audiences += copied(reader) + '\n';
        else if (roomIds.isEmpty() || roomIds.contains(id))
            readRoom(reader, id, now);
        else
            reader.skipCurrentElement();
    }
    Q_ASSERT(!reader.hasError());
    std::stable_sort(m_events.begin(), m_events.end(),
                     [](const Event &a, const Event &b) { return a.start < b.start; });
}

QByteArray SampleDay::toXml(int eventCount) const
{
    constexpr int idsPerRound = 10'000;
    QByteArray events;
    const int count = m_events.isEmpty() ? 0 : std::max(eventCount, m_events.size());
    for (int i = 0; i < count; ++i) {
        const Event &event = m_events[i % m_events.size()];
        events += "<event id=\"" + QByteArray::number(event.id + i / m_events.size() * idsPerRound)
            + "\">\n" + element("start", event.start.toString(Qt::ISODate).left(19).toLatin1())
            + element("end", event.end.toString(Qt::ISODate).left(19).toLatin1())
            + element("locationId", QByteArray::number(event.roomId)) + event.texts + "</event>\n";
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        + element("schedule",
                  '\n' + element("locations", '\n' + m_locations)
                      + element("audiences", '\n' + m_audiences)
                      + element("events", '\n' + events));
}

void SampleDay::readRoom(QXmlStreamReader &reader, int id, const QDateTime &now)
{
    const int shift = reader.attributes().value(QLatin1String("shift")).toInt();
    const int minute = now.time().hour() * 60 + now.time().minute();
    const int present = std::max(0, minute / grid * grid + shift);
    const int running = std::max(0, present - runsSince);
    FreeTime free { running - pause, std::max(present + runsFor + pause, firstLecture) };
    const QDateTime midnight(now.date(), QTime(0, 0), Qt::UTC);

    int eventId = id * 100;
    int start = nowhere;
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("location")) {
            m_locations += copied(reader) + '\n';
            continue;
        }
        const QString place = reader.attributes().value(QLatin1String("place")).toString();
        int minutes = reader.attributes().value(QLatin1String("minutes")).toInt();
        if (place == QLatin1String("now")) {
            start = running;
            minutes = present + runsFor - running;
        } else if (place == QLatin1String("next")) {
            start = present + nextStartsIn;
            free.from = std::max(start + minutes + pause, firstLecture);
        } else if (place == QLatin1String("beside")) {
            start = start == nowhere ? nowhere : start + overlapDelay;
        } else {
            start = free.take(minutes, place == QLatin1String("later"));
        }

        const QDateTime begin = midnight.addSecs(qint64(start) * 60);
        Event event { ++eventId, id, begin, begin.addSecs(qint64(minutes) * 60), {} };
        while (reader.readNextStartElement())
            event.texts += copied(reader) + '\n';
        if (start != nowhere) // otherwise the day is too short for it
            m_events.append(event);
    }
}

} // namespace simulator
