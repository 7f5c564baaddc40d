// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benchmarks.h"

#include <algorithm>

namespace {

constexpr int quarter = 15 * 60;
constexpr int hour = 4 * quarter;

constexpr auto eventTexts
    = "<shortTitle>Regelung</shortTitle><subTitle>Stabilität und Wurzelortskurven</subTitle>"
      "<speakers><speaker>Prof. Dr.-Ing. Sönke Albrechtsen</speaker><speaker>Dr. Maya Grünwald"
      "</speaker></speakers><description>Wir lesen Wurzelortskurven &amp; Bode-Diagramme, "
      "entwerfen "
      "einen Regler für den Prüfstand der Halle 4 und rechnen die Aufgaben des letzten Blattes "
      "gemeinsam vor.\nBitte Taschenrechner und Skript mitbringen; die Lösungen stehen ab "
      "Donnerstag im Netz.</description>";

QByteArray element(const char *name, const QByteArray &content, const QByteArray &attributes = {})
{
    return QByteArray("<") + name + attributes + '>' + content + "</" + name + '>';
}

QByteArray event(int id, int room, int group, const QDateTime &start, int seconds)
{
    const auto link = [](int audience, const char *mandatory) {
        return element("audience",
                       element("id", QByteArray::number(audience))
                           + element("mandatory", mandatory));
    };
    const QByteArray number = QByteArray::number(id);
    return element("event",
                   element("start", start.toString(Qt::ISODate).toLatin1())
                       + element("end", start.addSecs(seconds).toString(Qt::ISODate).toLatin1())
                       + element("locationId", QByteArray::number(room))
                       + element("title", "Regelungstechnik für Maschinenbauer, Teil " + number)
                       + element("audiences", link(group, "true") + link(group + 1, "false"))
                       + eventTexts,
                   " id=\"" + number + '"');
}

QByteArray document(int rooms, int groups, const QByteArray &events)
{
    QByteArray locations;
    QByteArray audiences;
    for (int id = 1; id <= std::max(rooms, groups); ++id) {
        const QByteArray number = QByteArray::number(id);
        const QByteArray attributes = " id=\"" + number + "\" displayOrder=\"" + number + '"';
        if (id <= rooms)
            locations += element("location",
                                 element("shortName", "HS " + number)
                                     + element("name", "Hörsaal " + number),
                                 attributes);
        if (id <= groups)
            audiences += element("audience", element("name", "Gruppe " + number), attributes);
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
        + element("schedule",
                  element("locations", locations) + element("audiences", audiences)
                      + element("events", events));
}

} // namespace

QByteArray scheduleDocument(int events, Times times)
{
    constexpr int eventsPerRoom = 50;
    constexpr int eventsPerGroup = 100;
    constexpr int quartersOfDay = 48; // 8:00 to 20:00
    // Not a divisor of an event's length, so that no event ends when another one starts.
    constexpr int distinctStep = 7;

    const int rooms = std::max(2, events / eventsPerRoom);
    const int groups = std::max(2, events / eventsPerGroup);
    QByteArray list;
    for (int i = 0; i < events; ++i) {
        const int offset
            = times == Times::Distinct ? i * distinctStep : i * 31 % quartersOfDay * quarter;
        // Calculated in UTC, where no hour is skipped, and written as local time.
        QDateTime start = QDateTime(QDate::currentDate(), QTime(8, 0), Qt::UTC).addSecs(offset);
        start.setTimeSpec(Qt::LocalTime);
        list += event(i + 1, i % rooms + 1, i % (groups - 1) + 1, start, 6 * quarter);
    }
    return document(rooms, groups, list);
}

QByteArray quietDocument(const QDateTime &now)
{
    return document(2, 2,
                    event(1, 1, 1, now.addSecs(-6 * hour), 2 * hour)
                        + event(2, 1, 1, now.addSecs(-2 * hour), 4 * hour)
                        + event(3, 1, 1, now.addSecs(3 * hour), 2 * hour));
}
