// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "attendance/attendancequeue.h"

#include "attendance/attendancenamecache.h"
#include "attendance/attendancerequest.h"
#include "attendance/attendanceresponse.h"
#include "notifications/noticelimits.h"

#include <QDebug>

#include <algorithm>
#include <memory>

AttendanceQueue::AttendanceQueue(QNetworkAccessManager &manager, AttendanceNameCache &names,
                                 const RequestLimits &limits, QObject *parent)
    : RecordQueue(attendanceSpool(), parent)
    , m_manager(manager)
    , m_names(names)
    , m_limits(limits)
{
}

AttendanceQueue::~AttendanceQueue()
{
    // Not only m_fresh: the thread may have been terminated before a request was sent.
    const auto requests = findChildren<AttendanceRequest *>();
    for (const AttendanceRequest *request : requests) {
        request->notification().change([](Notification &notification) {
            if (notification.type() == Notification::LOADING)
                notification.remove();
        });
    }
}

void AttendanceQueue::log(quint64 transponderId)
{
    if (const auto failure = refusal()) {
        reportFailure(*failure);
        return;
    }
    auto *request = new AttendanceRequest(transponderId, this);
    if (request->locationId() <= 0)
        qWarning() << "Plenar location ID not set";
    request->build();

    std::optional<DurableFile> file;
    auto failure = catchFailure([&] { file.emplace(spool().write(request->data())); });
    // The notice wakes the GUI thread, which takes the processor: show it while the disk works.
    greet(request);
    if (!failure)
        failure = catchFailure([&] { request->setSpoolPath(spool().commit(*file)); });
    if (!failure)
        ledger().onSaved(request->spoolPath());
    if (!failure && m_fresh.size() + resentCount() >= noticelimits::maxCards)
        failure = Failure::temporary(QStringLiteral("Too many cards at once."),
                                     tr("Too many cards at once."));
    if (!failure)
        failure = catchFailure([&] { send(request); });
    if (failure)
        onFailed(request, { failure });
}

void AttendanceQueue::reportFailure(const Failure &failure)
{
    logFailure(failure);
    NotificationHandle::showError(tr("Error"), failureText(false, failure), noticelimits::staffMs);
}

bool AttendanceQueue::isFresh(const QString &path) const
{
    return std::any_of(m_fresh.begin(), m_fresh.end(), [&path](const AttendanceRequest *request) {
        return request->spoolPath() == path;
    });
}

void AttendanceQueue::resend(const QString &path)
{
    auto record = std::make_unique<AttendanceRequest>(path);
    record->build();
    AttendanceRequest *request = record.release();
    request->setParent(this);
    connect(request, &AttendanceRequest::finished, this,
            [this, request](const RecordOutcome &outcome, const AttendanceResponse *response) {
                if (response) {
                    complete(request->spoolPath(), SpoolRemover::Sync::Soon);
                    response->log();
                }
                endResend(request->spoolPath(), outcome);
                request->deleteLater();
            });
    request->send(m_manager, m_limits);
}

void AttendanceQueue::logResendFailure(const Failure &failure) const
{
    qCritical() << "Error logging attendance:" << true << failure.logText();
}

QString AttendanceQueue::logRemovalFailure(const Failure &failure) const
{
    qCritical() << "Failed to remove a sent attendance record:" << failure.text;
    return failure.below(tr("Failed to remove an attendance log request from the queue. Attendance "
                            "logging has been stopped."));
}

/** Shows the notice for a card, with the name that the service last returned. */
void AttendanceQueue::greet(AttendanceRequest *request) const
{
    const QString name = m_names.name(request->transponderId());
    request->setNotification(NotificationHandle(
        new Notification(Notification::LOADING, name.isEmpty() ? tr("Attendance") : name,
                         tr("Logging attendance..."), 0, false, true)));
}

void AttendanceQueue::send(AttendanceRequest *request)
{
    connect(request, &AttendanceRequest::finished, this,
            [this, request](const RecordOutcome &outcome, const AttendanceResponse *response) {
                if (response)
                    onSucceeded(request, *response);
                else
                    onFailed(request, outcome);
            });
    m_fresh.insert(request);
    Q_EMIT freshChanged();
    request->send(m_manager, m_limits);
}

void AttendanceQueue::onSucceeded(AttendanceRequest *request, const AttendanceResponse &response)
{
    // First, so that a crash from here on does not send the record again.
    complete(request->spoolPath(), SpoolRemover::Sync::AtOnce);
    ledger().onAccepted();
    response.log();
    if (!request->notification().isGone()) {
        m_names.insert(request->transponderId(), response.name());
        // Nothing else would ever end a LOADING notice without a time-out.
        const bool isEndless = response.type() == Notification::LOADING && response.timeout() == 0;
        request->notification().change(
            [type = response.type(), title = response.title(), message = response.message(),
             timeout = isEndless ? noticelimits::temporaryMs : response.timeout()](
                Notification &notice) { notice.set(type, title, message, timeout); });
    }
    release(request);
}

/** Reports the failure of @p request and releases it. */
void AttendanceQueue::onFailed(AttendanceRequest *request, const RecordOutcome &outcome)
{
    const Failure &failure = *outcome.failure;
    logFailure(failure);
    ledger().onFailed(request->spoolPath(), outcome);
    const bool isQueued = failure.isTemporary() && request->isOnDisk();
    request->notification().changeOrShow(
        [title = tr("Error")] {
            return new Notification(Notification::LOADING, title, {}, 0, false, true);
        },
        [message = failureText(isQueued, failure), timeout = noticelimits::afterFailureMs(isQueued),
         type = isQueued ? Notification::WARNING : Notification::ERR](Notification &notice) {
            notice.set(type, notice.title(), message, timeout);
        });
    if (!failure.isTemporary())
        complete(request->spoolPath(), SpoolRemover::Sync::AtOnce);
    release(request);
}

void AttendanceQueue::logFailure(const Failure &failure)
{
    qCritical() << "Error logging attendance:" << false << failure.logText();
    processSoon();
}

QString AttendanceQueue::failureText(bool isQueued, const Failure &failure)
{
    return failure.below(
        isQueued
            ? tr("A temporary error occurred. However, the logging of your attendance has been "
                 "successfully queued for later execution.")
            : tr("Failed to log your attendance. Please call on a staff member in charge and ask "
                 "for instructions."));
}

void AttendanceQueue::release(AttendanceRequest *request)
{
    m_fresh.remove(request);
    Q_EMIT freshChanged();
    request->deleteLater();
}
