// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QVector>

class QXmlStreamReader;

namespace simulator {

/**
 * A plausible day at a German university around a given time: room 1 has an event that runs at that
 * time, one that begins half an hour to an hour later, and as many others as fit between morning
 * and late evening. The same time gives the same day. The texts are in sampleday.xml.
 */
class SampleDay
{
public:
    struct Event
    {
        int id = 0;
        int roomId = 0;
        QDateTime start; ///< wall-clock time; ignore its time zone
        QDateTime end;
        QByteArray texts; ///< the elements after the location
    };

    /// @param now the local time; its date is the date of the document
    /// @param roomIds the rooms to include, 1 to 6; empty for all
    explicit SampleDay(const QDateTime &now, const QVector<int> &roomIds = {});

    /// Sorted by start.
    [[nodiscard]] const QVector<Event> &events() const { return m_events; }

    /// The schedule document.
    /// @param eventCount minimum number of events; the day's events repeat with new ids
    [[nodiscard]] QByteArray toXml(int eventCount = 0) const;

private:
    void readRoom(QXmlStreamReader &reader, int id, const QDateTime &now);

    QByteArray m_locations;
    QByteArray m_audiences;
    QVector<Event> m_events;
};

} // namespace simulator
