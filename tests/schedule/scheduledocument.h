// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "schedule/eventdata.h"

#include <QBuffer>

/** Reads the schedule in @p xml. */
inline std::unique_ptr<EventData> readSchedule(const QByteArray &xml)
{
    QBuffer buffer;
    buffer.setData(xml);
    buffer.open(QIODevice::ReadOnly);
    return EventData::fromDocument(&buffer);
}

/** An event of a document, in location 3. */
inline QByteArray eventXml(const QString &start, const QString &end, const QByteArray &title = "T")
{
    return "<event id=\"7\"><start>" + start.toLatin1() + "</start><end>" + end.toLatin1()
        + "</end><title>" + title + "</title><locationId>3</locationId></event>";
}

/** A document with the location H1, whose id is 3, and @p events. */
inline QByteArray scheduleXml(const QByteArray &events)
{
    return R"(<schedule><locations><location id="3" displayOrder="1"><shortName>H1</shortName>
        <name>Hall</name></location></locations><events>)"
        + events + "</events></schedule>";
}

/** The same with one event, from 10:00 to 12:00 on 13 May 2024. */
inline QByteArray scheduleXml()
{
    return scheduleXml(
        eventXml(QStringLiteral("2024-05-13T10:00"), QStringLiteral("2024-05-13T12:00")));
}
