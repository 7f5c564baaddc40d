// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"
#include "schedule/event.h"
#include "schedule/eventaudience.h"
#include "schedule/eventlocation.h"
#include "schedule/schedulereader.h"

#include <QHash>
#include <QObject>
#include <QQmlListProperty>

#include <memory>

class QNetworkReply;
class XNetworkAccessManager;

/**
 * The schedule of one day. The constructor starts its only download. Owns all its events, locations
 * and audience groups. GUI thread.
 */
class EventData : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool error READ error NOTIFY errorChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
    Q_PROPERTY(QQmlListProperty<Event> events READ eventsProperty NOTIFY dataChanged)
    Q_PROPERTY(QQmlListProperty<EventLocation> locations READ locationsProperty NOTIFY dataChanged)
    Q_PROPERTY(QQmlListProperty<EventAudience> audiences READ audiencesProperty NOTIFY dataChanged)

public:
    /** A schedule may be larger and slower than any other response. */
    static RequestLimits scheduleLimits();

    explicit EventData(QObject *parent = nullptr);
    explicit EventData(const RequestLimits &limits, QObject *parent = nullptr);

    /** Reads @p document instead of downloading one. */
    static std::unique_ptr<EventData> fromDocument(QIODevice *document);

    /** True if the download or the reading failed. */
    [[nodiscard]] bool error() const { return m_error; }
    /** The failure, in the language of the interface. */
    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }
    [[nodiscard]] QQmlListProperty<Event> eventsProperty() { return { this, &m_objects.events }; }
    [[nodiscard]] QQmlListProperty<EventLocation> locationsProperty()
    {
        return { this, &m_objects.locations };
    }
    [[nodiscard]] QQmlListProperty<EventAudience> audiencesProperty()
    {
        return { this, &m_objects.audiences };
    }

    [[nodiscard]] const ScheduleObjects &objects() const { return m_objects; }

    /** The first location, in display order, with this id, or null. */
    [[nodiscard]] EventLocation *location(qint64 id) const;
    /** The first audience group, in display order, with this id, or null. */
    [[nodiscard]] EventAudience *audience(qint64 id) const;
    /** The events that name this location, in document order. */
    [[nodiscard]] QList<Event *> eventsOfLocation(qint64 id) const;

Q_SIGNALS:
    void errorChanged(bool error);
    void errorMessageChanged(QString message);
    /** The download has succeeded or failed; all objects are linked. */
    void readEventDataFinished(EventData *data);
    void dataChanged();

private Q_SLOTS:
    void readEventData(QNetworkReply *nr);

private:
    struct NoDownload
    {
    };
    EventData(NoDownload, QObject *parent);

    void readReply(QNetworkReply *reply);
    void readDocument(QIODevice *document);
    void finish();
    void indexObjects();
    void linkObjects();
    void setFailure(const QString &logged, const QString &shown);

    bool m_error = false;
    QString m_errorMessage;
    ScheduleObjects m_objects;
    QHash<qint64, EventLocation *> m_locationById;
    QHash<qint64, EventAudience *> m_audienceById;
    QHash<qint64, QList<Event *>> m_eventsByLocation;
};
