// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QVector>

class QXmlStreamReader;

namespace simulator {

/**
 * A believable day at a German university, arranged around a moment: room 1 has an event that runs
 * at that moment, one that begins half an hour to an hour later, and others before and after, as
 * many as fit between morning and late evening. The same moment gives the same day. The texts are
 * in sampleday.xml.
 */
class SampleDay
{
public:
    struct Event
    {
        int id = 0;
        int roomId = 0;
        QDateTime start; ///< wall-clock time; its time zone means nothing
        QDateTime end;
        QByteArray texts; ///< the elements of the document that follow the location
    };

    /// @param now the local time; the document is that of its date
    /// @param roomIds the rooms to keep, of 1 to 6; all if empty
    explicit SampleDay(const QDateTime &now, const QVector<int> &roomIds = {});

    /// In order of their start.
    [[nodiscard]] const QVector<Event> &events() const { return m_events; }

    /// The schedule document.
    /// @param eventCount at least so many events: the day's are repeated under new ids
    [[nodiscard]] QByteArray toXml(int eventCount = 0) const;

private:
    void readRoom(QXmlStreamReader &reader, int id, const QDateTime &now);

    QByteArray m_locations;
    QByteArray m_audiences;
    QVector<Event> m_events;
};

} // namespace simulator
