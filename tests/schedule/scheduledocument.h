// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "schedule/eventdata.h"

#include <QBuffer>

/** The schedule that is read from @p xml. */
inline std::unique_ptr<EventData> readSchedule(const QByteArray &xml)
{
    QBuffer buffer;
    buffer.setData(xml);
    buffer.open(QIODevice::ReadOnly);
    return EventData::fromDocument(&buffer);
}

/** An event in the document, in location 3. */
inline QByteArray eventXml(const QString &start, const QString &end, const QByteArray &title = "T")
{
    return "<event id=\"7\"><start>" + start.toLatin1() + "</start><end>" + end.toLatin1()
        + "</end><title>" + title + "</title><locationId>3</locationId></event>";
}

/** A document with one location, called H1, with the id 3 and these events. */
inline QByteArray scheduleXml(const QByteArray &events)
{
    return R"(<schedule><locations><location id="3" displayOrder="1"><shortName>H1</shortName>
        <name>Hall</name></location></locations><events>)"
        + events + "</events></schedule>";
}

/** The same with one event, which lasts from @p startMs to @p endMs from now. */
inline QByteArray daySoon(int startMs, int endMs)
{
    const QDateTime now = QDateTime::currentDateTime();
    return scheduleXml(eventXml(now.addMSecs(startMs).toString(Qt::ISODateWithMs),
                                now.addMSecs(endMs).toString(Qt::ISODateWithMs)));
}
