// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "schedule/eventdata.h"

#include <QBuffer>

/** Reads the schedule in @p xml. */
inline std::unique_ptr<EventData> readSchedule(const QByteArray &xml,
                                               QDeadlineTimer deadline = QDeadlineTimer::Forever)
{
    QBuffer buffer;
    buffer.setData(xml);
    buffer.open(QIODevice::ReadOnly);
    return EventData::fromDocument(&buffer, deadline);
}

/** An event of a document, in location 3. */
inline QByteArray eventXml(const QByteArray &start, const QByteArray &end,
                           const QByteArray &title = "T")
{
    return "<event id=\"7\"><start>" + start + "</start><end>" + end + "</end><title>" + title
        + "</title><locationId>3</locationId></event>";
}

/** A document with the location H1, whose id is 3, and @p events; one on 13 May 2024 by default. */
inline QByteArray scheduleXml(const QByteArray &events
                              = eventXml("2024-05-13T10:00", "2024-05-13T12:00"))
{
    return R"(<schedule><locations><location id="3" displayOrder="1"><shortName>H1</shortName>
        <name>Hall</name></location></locations><events>)"
        + events + "</events></schedule>";
}
