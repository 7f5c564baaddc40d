// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/eventdata.h"

#include "base/connections.h"
#include "base/reason.h"
#include "base/slices.h"
#include "config/config.h"
#include "net/errortext.h"
#include "net/http.h"
#include "net/xnetworkaccessmanager.h"

#include <QDebug>
#include <QIODevice>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <utility>

using namespace std::chrono_literals;

RequestLimits EventData::scheduleLimits()
{
    RequestLimits limits;
    limits.deadline = 120s;
    limits.maxBodyBytes = 64LL * 1024 * 1024;
    return limits;
}

EventData::EventData(QObject *parent)
    : EventData(scheduleLimits(), parent)
{
}

EventData::EventData(const RequestLimits &limits, QObject *parent)
    : EventData(NoDownload {}, parent)
{
    m_manager = new XNetworkAccessManager(this);
    connectChecked(m_manager,
                   SIGNAL(finished(QNetworkReply*)), this, SLOT(readEventData(QNetworkReply*)));
    const Config *config = Config::instance();
    if (!config->isScheduleDateValid())
        qWarning() << "Setting" << keys::overrideDateDate << "is no date, showing today";
    m_day = config->scheduleDate();
    http::get(*m_manager, QNetworkRequest(config->eventDataUrl(m_day)), limits);
}

EventData::EventData(NoDownload, QObject *parent)
    : QObject(parent)
    , m_errorMessage(QStringLiteral("No error"))
{
}

EventData::~EventData()
{
    if (m_thread)
        m_thread->requestInterruption();
    // The others are children.
    qDeleteAll(m_incoming.locations);
    qDeleteAll(m_incoming.events);
    qDeleteAll(m_incoming.audiences);
}

std::unique_ptr<EventData> EventData::fromDocument(QIODevice *document, QDeadlineTimer deadline)
{
    std::unique_ptr<EventData> data(new EventData(NoDownload {}, nullptr));
    data->take(readSchedule(document->readAll(), [&deadline] { return deadline.hasExpired(); }));
    while (data->takeNext()) { }
    data->finish();
    return data;
}

EventLocation *EventData::location(qint64 id) const
{
    return m_index.location(id);
}

EventAudience *EventData::audience(qint64 id) const
{
    return m_index.audience(id);
}

QList<Event *> EventData::eventsOfLocation(qint64 id) const
{
    return m_index.eventsOfLocation(id);
}

void EventData::discard()
{
    blockSignals(true);
    m_isDiscarded = true;
    delete std::exchange(m_manager, nullptr);
    if (m_thread) {
        m_thread->disconnect(this);
        m_thread->requestInterruption();
    }
    m_objects.locations += std::exchange(m_incoming.locations, {});
    m_objects.events += std::exchange(m_incoming.events, {});
    m_objects.audiences += std::exchange(m_incoming.audiences, {});
    // Not before the views have let go of the objects.
    QMetaObject::invokeMethod(
        this,
        [this] {
            runInSlices(
                this, [this] { return deleteNext(); }, [this] { deleteLater(); });
        },
        Qt::QueuedConnection);
}

void EventData::readEventData(QNetworkReply *nr)
{
    qDebug() << "Reading event data...";
    if (isGood(nr))
        read(nr->readAll());
    else
        endDownload();
}

/** False, with a failure, if there is no response to read. */
bool EventData::isGood(QNetworkReply *reply)
{
    if (!reply) {
        setFailure(QStringLiteral("WTF?! Network reply is NULL! :O"), {});
    } else if (reply->error() != QNetworkReply::NoError) {
        m_briefError = ::briefError(*reply);
        setFailure(QStringLiteral("failed to fetch eventdata: (%1) %2")
                       .arg(QString::number(reply->error()), errorText(*reply)),
                   tr("The schedule could not be fetched.") + QLatin1Char('\n')
                       + Reason::ofReply(*reply));
    }
    return !m_error;
}

void EventData::read(const QByteArray &document)
{
    m_thread = new ScheduleThread(document);
    connect(m_thread, &QThread::finished, this, [this] {
        if (m_isDiscarded)
            return; // the call was already posted
        take(m_thread->takeSchedule());
        runInSlices(
            this, [this] { return takeNext(); }, [this] { endDownload(); });
    });
    // The thread may outlive this object.
    connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
    m_thread->start(QThread::InheritPriority);
    if (m_thread->isRunning() || m_thread->isFinished())
        return;
    setFailure(QStringLiteral("no thread could be started"), {});
    m_thread->deleteLater();
    endDownload();
}

void EventData::take(ReadSchedule schedule)
{
    m_incoming = std::move(schedule.objects);
    m_index = std::move(schedule.index);
    if (!schedule.failure.isEmpty())
        setFailure(schedule.failure, schedule.shownFailure);
}

/** Makes one more object a child and links it. Returns false if there is none left. */
bool EventData::takeNext()
{
    const auto take = [this](auto &from, auto &to) {
        auto *object = from.takeFirst();
        object->setParent(this);
        to.append(object);
        return object;
    };
    if (!m_incoming.locations.isEmpty())
        take(m_incoming.locations, m_objects.locations)->updateRefs();
    else if (!m_incoming.events.isEmpty())
        take(m_incoming.events, m_objects.events)->updateRefs();
    else if (!m_incoming.audiences.isEmpty())
        take(m_incoming.audiences, m_objects.audiences);
    else
        return false;
    return true;
}

/** Deletes one more object, in the order of the children: Qt finds the first one at once. */
bool EventData::deleteNext()
{
    if (!m_objects.locations.isEmpty())
        delete m_objects.locations.takeFirst();
    else if (!m_objects.events.isEmpty())
        delete m_objects.events.takeFirst();
    else if (!m_objects.audiences.isEmpty())
        delete m_objects.audiences.takeFirst();
    else
        return false;
    return true;
}

void EventData::endDownload()
{
    if (m_manager)
        std::exchange(m_manager, nullptr)->deleteLater(); // and the reply with it
    qDebug() << "Done reading event data";
    finish();
}

void EventData::finish()
{
    Q_EMIT readEventDataFinished(this);
    Q_EMIT dataChanged();
}

/** An empty @p shown tells that the schedule could not be fetched. */
void EventData::setFailure(const QString &logged, const QString &shown)
{
    if (!m_error) {
        m_error = true;
        Q_EMIT errorChanged(true);
    }
    if (m_briefError.isEmpty())
        m_briefError = QStringLiteral("unreadable");
    m_shownError = shown.isEmpty() ? tr("The schedule could not be fetched.") : shown;
    if (m_errorMessage != logged) {
        m_errorMessage = logged;
        Q_EMIT errorMessageChanged(logged);
    }
    qCritical().noquote() << logged;
}
