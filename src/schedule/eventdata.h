// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"
#include "schedule/event.h"
#include "schedule/eventaudience.h"
#include "schedule/eventlocation.h"
#include "schedule/scheduleindex.h"
#include "schedule/scheduleobjects.h"
#include "schedule/schedulethread.h"

#include <QDate>
#include <QDeadlineTimer>
#include <QObject>
#include <QPointer>
#include <QQmlListProperty>

#include <memory>

class QIODevice;
class QNetworkReply;
class QNetworkAccessManager;

/**
 * The schedule of one day. The constructor starts its only download, which a thread of its own then
 * reads. Owns all its events, locations and audience groups. GUI thread.
 */
class EventData : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool error READ error NOTIFY errorChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY errorMessageChanged)
    Q_PROPERTY(QQmlListProperty<Event> events READ eventsProperty NOTIFY dataChanged)
    Q_PROPERTY(QQmlListProperty<EventLocation> locations READ locationsProperty NOTIFY dataChanged)
    Q_PROPERTY(QQmlListProperty<EventAudience> audiences READ audiencesProperty NOTIFY dataChanged)
    Q_PROPERTY(QString shownError READ shownError NOTIFY errorMessageChanged)

public:
    /** A schedule may be larger and slower than any other response. */
    static RequestLimits scheduleLimits();

    explicit EventData(QObject *parent = nullptr);
    explicit EventData(const RequestLimits &limits, QObject *parent = nullptr);

    ~EventData() override;

    /** Reads @p document, at once and in this thread, instead of downloading one. */
    static std::unique_ptr<EventData>
    fromDocument(QIODevice *document, QDeadlineTimer deadline = QDeadlineTimer::Forever);

    /** True if the download or the reading failed. */
    [[nodiscard]] bool error() const { return m_error; }
    /** The failure as it is logged. */
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

    /** The day that the download asks for. */
    [[nodiscard]] QDate day() const { return m_day; }
    /** What the failure means for a visitor, in the language of the interface. */
    [[nodiscard]] QString shownError() const { return m_shownError; }
    /** Why it failed, in a few words without anything from outside; empty after a success. */
    [[nodiscard]] QString briefError() const { return m_briefError; }

    [[nodiscard]] const ScheduleObjects &objects() const { return m_objects; }

    /** The first location, in display order, with this id, or null. */
    [[nodiscard]] EventLocation *location(qint64 id) const;
    /** The first audience group, in display order, with this id, or null. */
    [[nodiscard]] EventAudience *audience(qint64 id) const;
    /** The events that name this location, sorted by time. */
    [[nodiscard]] QList<Event *> eventsOfLocation(qint64 id) const;

    /**
     * Ends the download and deletes this object later, in slices: a large schedule would block the
     * interface. Emits nothing more.
     */
    void discard();

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

    [[nodiscard]] bool isGood(QNetworkReply *reply);
    void read(const QByteArray &document);
    void take(ReadSchedule schedule);
    [[nodiscard]] bool takeNext();
    [[nodiscard]] bool deleteNext();
    void endDownload();
    void finish();
    void setFailure(const QString &logged, const QString &shown);

    bool m_error = false;
    bool m_isDiscarded = false;
    QString m_errorMessage;
    QDate m_day;
    QString m_shownError;
    QString m_briefError;
    ScheduleObjects m_objects;
    ScheduleIndex m_index;
    ScheduleObjects m_incoming; ///< read, but no children yet
    QPointer<ScheduleThread> m_thread;
    QNetworkAccessManager *m_manager = nullptr; ///< of the download under way
};
