// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "schedule/eventdata.h"

#include "base/connections.h"
#include "config/config.h"
#include "net/errortext.h"
#include "net/http.h"
#include "net/xnetworkaccessmanager.h"
#include "schedule/scheduleexception.h"

#include <QDebug>
#include <QNetworkReply>
#include <QNetworkRequest>

using namespace std::chrono_literals;

namespace {

/** Keeps the first of several objects with the same id. */
template <typename T> QHash<qint64, T *> byId(const QList<T *> &objects)
{
    QHash<qint64, T *> index;
    index.reserve(objects.size());
    for (T *object : objects) {
        if (!index.contains(object->id()))
            index.insert(object->id(), object);
    }
    return index;
}

/** The reply's error text in the language of the interface. */
QString shownError(const QNetworkReply &reply)
{
    const QString text = errorText(reply);
    // Qt does not translate this message.
    const QString untranslated = QStringLiteral(" - server replied: ");
    const int split = text.indexOf(untranslated);
    if (!text.startsWith(QLatin1String("Error transferring")) || split < 0)
        return text;
    return EventData::tr("Error transferring %1 - server replied: %2")
        .arg(reply.url().toDisplayString(), text.mid(split + untranslated.size()));
}

} // namespace

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
    auto *manager = new XNetworkAccessManager(this);
    connectChecked(manager,
                   SIGNAL(finished(QNetworkReply*)), this, SLOT(readEventData(QNetworkReply*)));
    const Config *config = Config::instance();
    if (!config->isScheduleDateValid())
        qWarning() << "Setting" << keys::overrideDateDate << "is no date, showing today";
    const QUrl url = config->eventDataUrl(config->scheduleDate());
    http::get(*manager, QNetworkRequest(url), limits);
}

EventData::EventData(NoDownload, QObject *parent)
    : QObject(parent)
    , m_errorMessage(tr("No error"))
{
    // Connected before all other receivers, so that they find the objects linked.
    connect(this, &EventData::readEventDataFinished, this, &EventData::linkObjects);
}

std::unique_ptr<EventData> EventData::fromDocument(QIODevice *document)
{
    std::unique_ptr<EventData> data(new EventData(NoDownload {}, nullptr));
    data->readDocument(document);
    data->finish();
    return data;
}

EventLocation *EventData::location(qint64 id) const
{
    return m_locationById.value(id);
}

EventAudience *EventData::audience(qint64 id) const
{
    return m_audienceById.value(id);
}

QList<Event *> EventData::eventsOfLocation(qint64 id) const
{
    return m_eventsByLocation.value(id);
}

void EventData::readEventData(QNetworkReply *nr)
{
    qDebug() << "Reading event data...";
    readReply(nr);
    // The only download is done; the reply is deleted with its manager.
    if (nr)
        nr->manager()->deleteLater();
    qDebug() << "Done reading event data";
    finish();
}

void EventData::readReply(QNetworkReply *reply)
{
    if (!reply) {
        constexpr auto source = QT_TR_NOOP("WTF?! Network reply is NULL! :O");
        setFailure(QString::fromLatin1(source), tr(source));
    } else if (reply->error() != QNetworkReply::NoError) {
        constexpr auto source = QT_TR_NOOP("failed to fetch eventdata: (%1) %2");
        const QString code = QString::number(reply->error());
        setFailure(QString::fromLatin1(source).arg(code, errorText(*reply)),
                   tr(source).arg(code, shownError(*reply)));
    } else {
        readDocument(reply);
    }
}

void EventData::readDocument(QIODevice *document)
{
    try {
        ScheduleReader(document, m_objects, this).read();
    } catch (const ScheduleException &e) {
        setFailure(QString::fromUtf8(e.what()), e.shown());
    } catch (const std::exception &e) {
        // Out of memory, for example. The receivers still need readEventDataFinished().
        setFailure(QString::fromUtf8(e.what()), QString::fromUtf8(e.what()));
    }
}

void EventData::finish()
{
    Q_EMIT readEventDataFinished(this);
    Q_EMIT dataChanged();
}

/** Builds hashes, so that linking takes time linear in the number of events. */
void EventData::indexObjects()
{
    m_locationById = byId(m_objects.locations);
    m_audienceById = byId(m_objects.audiences);
    m_eventsByLocation.clear();
    for (Event *event : qAsConst(m_objects.events))
        m_eventsByLocation[event->locationId()].append(event);
}

void EventData::linkObjects()
{
    indexObjects();
    for (Event *event : qAsConst(m_objects.events))
        event->updateRefs();
    for (EventLocation *location : qAsConst(m_objects.locations))
        location->updateRefs();
    m_eventsByLocation.clear(); // each location now holds its own events
}

void EventData::setFailure(const QString &logged, const QString &shown)
{
    if (!m_error) {
        m_error = true;
        Q_EMIT errorChanged(true);
    }
    if (m_errorMessage != shown) {
        m_errorMessage = shown;
        Q_EMIT errorMessageChanged(shown);
    }
    qCritical().noquote() << logged;
}
