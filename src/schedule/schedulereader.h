// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QBuffer>
#include <QCoreApplication>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QXmlStreamReader>

class Event;
class EventAudience;
class EventEAudience;
class EventLocation;
class QIODevice;
class QObject;
struct EventFields;

/** The objects of one schedule: events in document order, the others sorted for display. */
struct ScheduleObjects
{
    QList<Event *> events;
    QList<EventLocation *> locations;
    QList<EventAudience *> audiences;
};

/**
 * Reads the XML document of one day, as the events service sends it, into objects.
 *
 * Skips unknown elements with a warning. Stops at the first invalid value; objects read before it
 * stay.
 */
class ScheduleReader
{
    Q_DECLARE_TR_FUNCTIONS(EventData)

public:
    /** Reads from @p document into @p objects; @p parent becomes the parent of all of them. */
    ScheduleReader(QIODevice *document, ScheduleObjects &objects, QObject *parent);

    /** Throws ScheduleException. */
    void read();

private:
    template <typename ReadChild> void readChildren(QLatin1String name, ReadChild readChild);
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
    void reportInvalid(const char *field);
    template <typename... Arguments> void raise(const char *source, const Arguments &...arguments);
    [[noreturn]] void failAtError() const;

    QBuffer m_document;
    QXmlStreamReader m_xml;
    ScheduleObjects &m_objects;
    QObject *m_parent;
    // Most events share their times, and parsing a local time is the most expensive step.
    QHash<QString, QDateTime> m_knownTimes;
    int m_warnings = 0;
    QString m_shownError; ///< in the language of the interface; empty for errors of m_xml
};
