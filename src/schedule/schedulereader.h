// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/xmlexcess.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QXmlStreamReader>

#include <array>
#include <functional>
#include <utility>

class EventEAudience;
struct EventFields;
struct ScheduleObjects;

/**
 * Reads the XML document of one day, as the events service sends it, into objects.
 *
 * Skips unknown elements with a warning, and what would make reading slow. Stops at the first
 * invalid value; objects read before it stay.
 */
class ScheduleReader
{
    Q_DECLARE_TR_FUNCTIONS(EventData)

public:
    /**
     * Reads from @p document into @p objects, which get no parent. Asks @p mustStop now and then;
     * true is like an invalid value.
     */
    ScheduleReader(const QByteArray &document, ScheduleObjects &objects,
                   std::function<bool()> mustStop);

    /** Throws Exception. */
    void read();

private:
    template <typename ReadChild> void readChildren(QLatin1String name, ReadChild readChild);
    [[noreturn]] static void refuseForeignDocument();
    [[nodiscard]] bool readNextElement();
    void stopInTime();
    void readSchedule();
    void readLocation();
    void readAudience();
    void readEvent();
    void readEventChild(EventFields &fields, QList<EventEAudience *> &links);
    void readEventAudience(QList<EventEAudience *> &links);
    [[nodiscard]] QString text();
    [[nodiscard]] qint64 readId();
    [[nodiscard]] int readDisplayOrder();
    [[nodiscard]] QDateTime readDateTime();
    void skipUnexpected();
    void logSkipped() const;
    void reportInvalid(const char *field);
    void raise(const QString &error);
    [[noreturn]] void failAtError() const;

    QBuffer m_document;
    QXmlStreamReader m_xml;
    ScheduleObjects &m_objects;
    std::function<bool()> m_mustStop;
    // Most events share their times, and parsing a local time is the most expensive step. Each time
    // has one place: a document cannot make the search slow.
    std::array<std::pair<QString, QDateTime>, 1024> m_knownTimes;
    int m_elements = 0;
    int m_unexpected = 0;
    XmlExcess m_excess; ///< not in m_xml
    bool m_isForeign = false; ///< a document of somebody else's type
};
