// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "presence/tallyxflow.h"

#include "base/exceptions.h"
#include "config/config.h"
#include "config/keys.h"
#include "notifications/noticelimits.h"
#include "presence/tallyxservice.h"

#include <QDebug>

#include <cxxabi.h>
#include <utility>

namespace {

uint confirmTimeout()
{
    return static_cast<uint>(Config::instance()->number(keys::tallyxConfirmTimeout));
}

uint notificationTimeout()
{
    return static_cast<uint>(Config::instance()->number(keys::tallyxNotificationTimeout));
}

QString textOf(const std::exception_ptr &exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (const std::exception &e) {
        return QString::fromUtf8(e.what());
    } catch (abi::__forced_unwind &) {
        throw; // the thread is being ended
    } catch (...) {
        return {};
    }
}

} // namespace

TallyxLogEntity::Type TallyxFlow::firstType()
{
    return Config::instance()->tallyxMode() == Config::TallyxContinuous
        ? TallyxLogEntity::CONTINUOUS
        : TallyxLogEntity::AUTO;
}

TallyxFlow::TallyxFlow(quint64 transponderId, QNetworkAccessManager &manager,
                       const RequestLimits &limits, QObject *parent)
    : QObject(parent)
    , m_manager(manager)
    , m_limits(limits)
    , m_record(transponderId, firstType())
    , m_notice(this)
{
}

TallyxFlow::~TallyxFlow()
{
    if (m_state != Answered && m_state != Failed)
        m_notice.withdraw();
}

void TallyxFlow::start()
{
    guarded([this] {
        m_record.save();
        m_reply = tallyxservice::getStatus(m_manager, m_record);
        m_reply->setParent(this);
        connect(m_reply, &QNetworkReply::finished, this, &TallyxFlow::onGetStatusFinished);
        setState(Querying);
    });
}

void TallyxFlow::abandon()
{
    if (m_state != Querying && m_state != Deciding)
        return;
    m_notice.withdraw();
    end(Failed);
}

void TallyxFlow::onGetStatusFinished()
{
    qDebug() << "onGetStatusFinished()";
    const QPointer<QNetworkReply> reply = std::exchange(m_reply, {});
    reply->deleteLater();
    if (m_state != Querying)
        return;
    guarded([this, &reply] {
        setState(Deciding);
        decide(*reply);
    });
}

void TallyxFlow::onButtonClicked(int idx)
{
    if (m_state != Deciding)
        return;
    guarded([this, idx] {
        if (idx == 0)
            changeType(TallyxLogEntity::IN);
        else if (idx == 1)
            changeType(TallyxLogEntity::OUT);
        else
            qWarning() << "onButtonClicked(): unhandled case" << idx;
    });
}

void TallyxFlow::postLog()
{
    qDebug() << "postLog()";
    if (m_state != Deciding)
        return;
    guarded([this] {
        setState(Sending);
        m_notice.settle(m_record.type());
        m_record.setLogDelay(m_record.age());
        m_record.setTransmissionDelay(m_record.age());
        trySave();
        m_reply = tallyxservice::postLog(m_manager, m_record, m_limits);
        m_reply->setParent(this);
        connect(m_reply, &QNetworkReply::finished, this, &TallyxFlow::onPostLogFinished);
    });
}

void TallyxFlow::onPostLogFinished()
{
    qDebug() << "onPostLogFinished()";
    const QPointer<QNetworkReply> reply = std::exchange(m_reply, {});
    reply->deleteLater();
    if (m_state != Sending)
        return;
    guarded([this, &reply] {
        const QJsonObject answer = tallyxservice::readAcknowledgement(*reply);
        Q_EMIT acknowledged(); // first of all: from here on a crash must not send it again
        m_notice.acknowledge(tallyxservice::text(answer, "message"), notificationTimeout());
        end(Answered);
    });
}

/** The person can not be asked any more; what was sent goes on. */
void TallyxFlow::onNotificationRemoved()
{
    if (m_state != Querying && m_state != Deciding)
        return;
    qWarning() << "Presence question is gone, leaving the record to the queue.";
    end(Failed);
}

/** Lets the person choose: what the service proposes, or by hand when it can not be understood. */
void TallyxFlow::decide(QNetworkReply &reply)
{
    QString title;
    QString message;
    try {
        const QJsonObject status = tallyxservice::readStatus(reply);
        title = tallyxservice::text(status, "name");
        message = tallyxservice::text(status, "message");
        const QJsonValue isPresent = status.value(QLatin1String("present"));
        if (isPresent.isBool())
            changeType(isPresent.toBool() ? TallyxLogEntity::OUT : TallyxLogEntity::IN);
    } catch (const AttendanceWarningException &e) {
        qWarning() << "Failed to query presence status:" << e.what();
        message = tr("Failed to query your presence status. Please select \"enter\" or \"leave\" "
                     "below.")
            + QLatin1String("\n\n") + QString::fromUtf8(e.what());
    }
    m_notice.ask(m_record.type(), title, message, confirmTimeout());
}

void TallyxFlow::changeType(TallyxLogEntity::Type type)
{
    if (m_record.type() == type)
        return;
    m_record.setType(type);
    trySave();
}

/**
 * A person who has been asked goes on: the choice is kept here, and saved or posted later. The
 * first save of all is none of these.
 */
void TallyxFlow::trySave()
{
    try {
        m_record.save();
    } catch (const AttendanceErrorException &e) {
        qCritical() << "Failed to save a presence record again:" << e.what();
    }
}

/** Whether the queue can send what the person has chosen. What says otherwise is removed. */
bool TallyxFlow::keepsRecord()
{
    if (!m_record.isOnDisk() || m_record.savedType() == m_record.type())
        return m_record.isOnDisk();
    if (const auto failure = Spool::remove(m_record.spoolPath()))
        qCritical() << "Failed to remove a presence record that is out of date:" << *failure;
    return false;
}

/** Runs the body of a slot; what it throws ends the flow. */
template <typename Function> void TallyxFlow::guarded(Function function)
{
    try {
        function();
    } catch (abi::__forced_unwind &) {
        throw; // the thread is being ended
    } catch (...) {
        fail(std::current_exception());
    }
}

void TallyxFlow::fail(const std::exception_ptr &exception)
{
    const QString text = textOf(exception);
    qWarning() << "Error logging presence:"
               << (text.isEmpty() ? QStringLiteral("unknown exception") : text);
    const bool isQueued = keepsRecord();
    m_notice.fail(failureText(isQueued, text),
                  isQueued ? noticelimits::temporaryMs : noticelimits::staffMs);
    end(Failed);
}

QString TallyxFlow::failureText(bool isQueued, const QString &reason)
{
    const QString advice = isQueued
        ? tr("A temporary error occurred. However, the logging of your presence has been "
             "successfully queued for later execution.")
        : tr("Failed to log your presence. Please call on a staff member in charge and ask for "
             "instructions.");
    return advice + QLatin1String("\n\n") + (reason.isEmpty() ? tr("Unknown error") : reason);
}

void TallyxFlow::end(State state)
{
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
    }
    setState(state);
    Q_EMIT ended();
}

void TallyxFlow::setState(State state)
{
    m_state = state;
    Q_EMIT stateChanged();
}
