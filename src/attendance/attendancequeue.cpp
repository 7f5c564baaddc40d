// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "attendance/attendancequeue.h"

#include "attendance/attendancenamecache.h"
#include "attendance/attendancerequest.h"
#include "attendance/attendanceresponse.h"
#include "attendance/attendancespool.h"
#include "base/exceptions.h"
#include "notifications/noticelimits.h"
#include "spool/spoolpass.h"

#include <QDebug>
#include <QFile>

#include <algorithm>
#include <cxxabi.h>
#include <utility>

using namespace std::chrono_literals;

namespace {

/** Text and notification type of a failure. */
std::pair<QString, int> describe(const std::exception_ptr &exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (const AttendanceException &e) {
        return { QString::fromUtf8(e.what()), e.type() };
    } catch (const std::exception &e) {
        return { QString::fromUtf8(e.what()), Notification::ERR };
    } catch (abi::__forced_unwind &) {
        throw; // the thread is being ended
    } catch (...) {
        return { QString(), Notification::ERR };
    }
}

} // namespace

AttendanceQueue::AttendanceQueue(QNetworkAccessManager &manager, AttendanceNameCache &names,
                                 const RequestLimits &limits, QObject *parent)
    : QObject(parent)
    , m_manager(manager)
    , m_names(names)
    , m_limits(limits)
    , m_spool(attendanceSpool())
    , m_remover(this)
{
    m_spool.removeLeftovers();
}

AttendanceQueue::~AttendanceQueue()
{
    // Also one that has not been sent yet, if the thread was ended amid its making.
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
    auto *request = new AttendanceRequest(transponderId, this);
    if (request->locationId() <= 0)
        qWarning() << "Plenar location ID not set";
    bool isGreeted = false;
    const auto greet = [&] {
        isGreeted = true;
        const QString name = m_names.name(transponderId);
        request->setNotification(NotificationHandle(
            new Notification(Notification::LOADING, name.isEmpty() ? tr("Attendance") : name,
                             tr("Logging attendance..."), 0, false, true)));
    };
    try {
        request->build();
        DurableFile file = m_spool.write(request->data());
        // The GUI thread takes the processor once it is woken: wake it while the disk works.
        greet();
        request->setSpoolPath(Spool::commit(file));
        if (m_underWay.size() >= noticelimits::mostCards)
            throw AttendanceWarningException(tr("Too many cards at once."));
        send(request);
    } catch (abi::__forced_unwind &) {
        throw; // the thread is being ended
    } catch (...) {
        if (!isGreeted)
            greet(); // so that the failure has a name on it
        onFailed(request, Kind::Fresh, std::current_exception());
    }
}

bool AttendanceQueue::isBusy() const
{
    return m_pass || !m_underWay.isEmpty();
}

void AttendanceQueue::startPass()
{
    if (!m_spool.canBeListed()) {
        Q_EMIT retryWanted(300s);
        Q_EMIT passFinished();
        return;
    }
    m_pass = new SpoolPass(
        m_spool.folder(), [this](const QString &path) { return resend(path); }, this);
    connect(m_pass, &SpoolPass::finished, this, [this] {
        m_pass->deleteLater();
        m_pass.clear();
        Q_EMIT passFinished();
    });
    m_pass->setHeld(m_isHeld);
    m_pass->proceed();
}

void AttendanceQueue::setHeld(bool held)
{
    m_isHeld = held;
    if (m_pass)
        m_pass->setHeld(held);
}

void AttendanceQueue::reportFailure(const std::exception_ptr &exception)
{
    onFailed(nullptr, Kind::Fresh, exception);
}

/** Sends the record of a file, unless it is in use or can not be read. */
bool AttendanceQueue::resend(const QString &path)
{
    // The iterator is a name ahead, of a file that may be gone by now.
    if (m_isStopped || isInUse(path) || !QFile::exists(path))
        return false;
    try {
        auto *request = new AttendanceRequest(path, this);
        request->build();
        send(request);
        return true;
    } catch (abi::__forced_unwind &) {
        throw; // the thread is being ended
    } catch (...) {
        onFailed(nullptr, Kind::Delayed, std::current_exception());
        return false;
    }
}

void AttendanceQueue::send(AttendanceRequest *request)
{
    connect(request, &AttendanceRequest::succeeded, this,
            [this, request](const auto &response) { onSucceeded(request, response); });
    connect(request, &AttendanceRequest::failed, this,
            [this, request](const std::exception_ptr &exception) {
                onFailed(request, request->isDelayed() ? Kind::Delayed : Kind::Fresh, exception);
            });
    m_underWay.insert(request);
    Q_EMIT freshChanged();
    request->send(m_manager, m_limits);
}

void AttendanceQueue::onSucceeded(AttendanceRequest *request, const AttendanceResponse &response)
{
    complete(request); // first of all: from here on a crash must not send it again
    response.log();
    if (!request->isDelayed() && !request->notification().isGone()) {
        m_names.insert(request->transponderId(), response.name());
        // Nobody would ever end a notice that goes on turning.
        const bool turns = response.type() == Notification::LOADING && response.timeout() == 0;
        request->notification().change(
            [type = response.type(), title = response.title(), message = response.message(),
             timeout = turns ? noticelimits::temporaryMs : response.timeout()](
                Notification &shown) { shown.set(type, title, message, timeout); });
    }
    release(request);
}

/** Every failure of a record, or of a card that came to none, ends here. */
void AttendanceQueue::onFailed(AttendanceRequest *request, Kind kind,
                               const std::exception_ptr &exception)
{
    const auto [text, type] = describe(exception);
    const bool isDelayed = kind == Kind::Delayed;
    qCritical() << "Error logging attendance:" << isDelayed
                << (text.isEmpty() ? QStringLiteral("unknown exception") : text);
    Q_EMIT retryWanted(isDelayed ? 300s : 60s);
    if (!isDelayed)
        tellPerson(request, text, type == Notification::WARNING);
    if (request && !isDelayed && type != Notification::WARNING)
        complete(request);
    if (request)
        release(request);
}

void AttendanceQueue::tellPerson(const AttendanceRequest *request, const QString &text,
                                 bool isTemporary) const
{
    const QString advice = isTemporary
        ? tr("A temporary error occurred. However, the logging of your attendance has been "
             "successfully queued for later execution.")
        : tr("Failed to log your attendance. Please call on a staff member in charge and ask for "
             "instructions.");
    const QString message
        = advice + QLatin1String("\n\n") + (text.isEmpty() ? tr("Unknown error") : text);
    const uint timeout = isTemporary ? noticelimits::temporaryMs : noticelimits::staffMs;
    if (!request) {
        NotificationHandle::showError(tr("Error"), message, timeout);
        return;
    }
    request->notification().changeOrShow(
        [title = tr("Error")] {
            return new Notification(Notification::LOADING, title, {}, 0, false, true);
        },
        [message, timeout, type = isTemporary ? Notification::WARNING : Notification::ERR](
            Notification &shown) { shown.set(type, shown.title(), message, timeout); });
}

/** The record has done its part: nothing of it may be sent again. */
void AttendanceQueue::complete(const AttendanceRequest *request)
{
    const QString path = request->spoolPath();
    if (path.isEmpty())
        return;
    const auto sync = request->isDelayed() ? SpoolRemover::Sync::Soon : SpoolRemover::Sync::AtOnce;
    if (const auto failure = m_remover.remove(path, sync)) {
        qCritical() << "Failed to remove a sent attendance record:" << *failure;
        const NotificationHandle notification(new Notification(
            Notification::ERR, tr("FATAL ERROR"),
            tr("Failed to remove an attendance log request from the queue. Attendance logging has "
               "been stopped.\n\n%1")
                .arg(*failure),
            0, false, true));
        m_isStopped = true;
        Q_EMIT fatalStop();
    }
}

void AttendanceQueue::release(AttendanceRequest *request)
{
    const bool wasSent = m_underWay.remove(request);
    if (m_pass && wasSent && request->isDelayed())
        m_pass->noteEnd(request->wasAnswered());
    Q_EMIT freshChanged();
    request->deleteLater();
}

bool AttendanceQueue::hasFresh() const
{
    return std::any_of(m_underWay.begin(), m_underWay.end(),
                       [](const AttendanceRequest *each) { return !each->isDelayed(); });
}

bool AttendanceQueue::isInUse(const QString &path) const
{
    return std::any_of(
        m_underWay.begin(), m_underWay.end(),
        [&path](const AttendanceRequest *each) { return each->spoolPath() == path; });
}
