// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/kioskstatus.h"

#include "api/lbapi.h"
#include "base/runtimefolder.h"
#include "config/config.h"
#include "status/clocksync.h"
#include "status/statusfiles.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QPointer>
#include <QQuickWindow>

#include <atomic>
#include <cmath>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

QPointer<KioskStatus> s_instance;

/// Time of the last frame in ms since 1970. The render thread sets it, of whatever window.
std::atomic<qint64> s_lastFrame = 0;

constexpr qint64 frameStepSecs = 300; // a frame alone is worth writing after this time

QDateTime now()
{
    return QDateTime::currentDateTimeUtc();
}

QJsonValue json(const QDateTime &time)
{
    return time.isValid() ? QJsonValue(time.toUTC().toString(Qt::ISODate)) : QJsonValue();
}

QJsonValue orNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonObject failedRecord(const FailedRecord &record)
{
    return { { QStringLiteral("name"), record.name },
             { QStringLiteral("tries"), record.tries },
             { QStringLiteral("lastTry"), json(record.lastTry) },
             { QStringLiteral("answer"), record.answer } };
}

QJsonObject failedRecords(const QueueStatus &status)
{
    QJsonArray failed;
    for (const FailedRecord &record : status.failed)
        failed.append(failedRecord(record));
    return { { QStringLiteral("folder"), status.folder }, { QStringLiteral("failed"), failed } };
}

} // namespace

KioskStatus::LastFailure::LastFailure(const QString &why)
    : time(now())
    , reason(why)
{
}

QJsonValue KioskStatus::LastFailure::toJson() const
{
    if (!time.isValid())
        return {};
    return QJsonObject { { QStringLiteral("time"), json(time) },
                         { QStringLiteral("reason"), reason } };
}

KioskStatus::KioskStatus(QObject *parent)
    : QObject(parent)
    , m_status(statusfiles::status, RuntimeFile::Readers::Everybody, [this] { return content(); })
    , m_records(statusfiles::spool, RuntimeFile::Readers::Owner, [this] { return records(); })
{
    m_uptime.start();
    connect(LBAPI::instance(), &LBAPI::scheduleReadFinished, this, &KioskStatus::onScheduleRead);
}

KioskStatus *KioskStatus::instance()
{
    if (!s_instance)
        s_instance = new KioskStatus(QCoreApplication::instance());
    return s_instance;
}

void KioskStatus::begin()
{
    if (std::exchange(m_hasBegun, true))
        return;
    const QString folder = runtimeFolder();
    m_count = StartCount::read(folder);
    m_count.noteStart();
    m_count.write(folder);
    m_status.remove();
    m_records.remove();
    writeFromNowOn();
}

void KioskStatus::watchFrames(QQuickWindow *window)
{
    connect(
        window, &QQuickWindow::frameSwapped, this,
        [] { s_lastFrame = QDateTime::currentMSecsSinceEpoch(); }, Qt::DirectConnection);
}

void KioskStatus::onFirstFrame()
{
    m_hasFrame = true;
    writeFromNowOn();
}

/** Not before the first frame, which nothing may delay, and not beside another kiosk. */
void KioskStatus::writeFromNowOn()
{
    if (!m_hasBegun || !m_hasFrame)
        return;
    m_isWriting = true;
    const LBAPI *api = LBAPI::instance();
    connect(api, &LBAPI::cardWarningChanged, this, &KioskStatus::update);
    connect(Config::instance(), &Config::configChanged, this, &KioskStatus::update);
    connect(LBAPI::instance()->notifications(), &NotificationsModel::lengthChanged, this,
            &KioskStatus::update);
    update();
    m_records.update();
}

void KioskStatus::setLifeSigns(std::chrono::milliseconds interval, bool hasWatchdog)
{
    m_lifeInterval = interval;
    m_hasWatchdog = hasWatchdog;
}

void KioskStatus::onSignOfLife()
{
    if (m_isWriting)
        m_status.touch();
    update(); // finds what gives no signal: frames, the clock, a notice that came to stay
}

void KioskStatus::onSilence()
{
    ++m_missed;
    update();
}

void KioskStatus::end()
{
    if (!m_hasBegun)
        return;
    m_count.isRunning = false;
    m_count.write(runtimeFolder());
}

void KioskStatus::onScheduleRead(EventData *schedule)
{
    if (schedule->error()) {
        m_scheduleFailure = LastFailure(schedule->briefError());
    } else {
        m_scheduleRead = now();
        m_events = schedule->objects().events.size();
    }
    update();
}

void KioskStatus::onTokenObtained(const QDateTime &validUntil, const QString &grant)
{
    m_tokenEnd = validUntil;
    m_grant = grant;
    update();
}

void KioskStatus::onTokenFailed(const QString &reason)
{
    m_tokenFailure = LastFailure(reason);
    update();
}

void KioskStatus::onConfigurationReceived()
{
    m_configured = now();
    update();
}

void KioskStatus::onConfigurationFailed(const QString &reason)
{
    m_configurationFailure = LastFailure(reason);
    update();
}

void KioskStatus::onReaderOpened(const QString &port)
{
    m_port = port;
    update();
}

void KioskStatus::onReaderStateChanged(bool connected)
{
    if (!connected)
        m_port.clear();
    update();
}

void KioskStatus::onCardRead()
{
    m_lastCard = now();
    update();
}

void KioskStatus::onWorkerStarted()
{
    m_attendance.sumUp();
    m_presence.sumUp();
}

void KioskStatus::onAttendanceStatusChanged(const QueueStatus &status)
{
    m_attendance.take(status);
    onQueueChanged();
}

void KioskStatus::onPresenceStatusChanged(const QueueStatus &status)
{
    m_presence.take(status);
    onQueueChanged();
}

void KioskStatus::Queue::take(const QueueStatus &status)
{
    const QueueStatus last = std::exchange(now, status);
    now.sent += before.sent;
    now.refused += before.refused;
    if (!now.lastSuccess.isValid())
        now.lastSuccess = last.lastSuccess;
    if (!now.lastFailure.isValid()) {
        now.lastFailure = last.lastFailure;
        now.lastReason = last.lastReason;
    }
}

void KioskStatus::onQueueChanged()
{
    update();
    if (m_isWriting)
        m_records.update();
}

void KioskStatus::update()
{
    if (m_isWriting)
        m_status.update();
}

/** A frame is drawn at least once a minute, but is not worth a file on its own. */
QJsonObject KioskStatus::content()
{
    const QJsonObject present = parts();
    const qint64 msecs = s_lastFrame;
    const QDateTime frame
        = msecs > 0 ? QDateTime::fromMSecsSinceEpoch(msecs, Qt::UTC) : QDateTime();
    if (present != m_parts || std::abs(m_frame.secsTo(frame)) >= frameStepSecs) {
        m_parts = present;
        m_frame = frame;
    }
    QJsonObject all = m_parts;
    all.insert(QStringLiteral("lastFrame"), json(m_frame));
    return all;
}

QJsonObject KioskStatus::parts()
{
    const Config *config = Config::instance();
    const auto synchronised = isClockSynchronised();
    return {
        { QStringLiteral("format"), statusfiles::format },
        { QStringLiteral("version"), QCoreApplication::applicationVersion() },
        { QStringLiteral("process"), static_cast<qint64>(getpid()) },
        { QStringLiteral("started"), json(startTime()) },
        { QStringLiteral("restarts"), m_count.starts - 1 },
        { QStringLiteral("crashes"), m_count.crashes },
        { QStringLiteral("room"), room() },
        { QStringLiteral("view"), config->initialItem().remove(QStringLiteral(".qml")) },
        { QStringLiteral("schedule"), schedule() },
        { QStringLiteral("token"),
          QJsonObject { { QStringLiteral("validUntil"), json(m_tokenEnd) },
                        { QStringLiteral("grant"), orNull(m_grant) },
                        { QStringLiteral("lastFailure"), m_tokenFailure.toJson() } } },
        { QStringLiteral("configuration"),
          QJsonObject { { QStringLiteral("received"), json(m_configured) },
                        { QStringLiteral("lastFailure"), m_configurationFailure.toJson() } } },
        { QStringLiteral("reader"), reader() },
        { QStringLiteral("attendance"), queue(m_attendance.now, config->attendanceEnabled()) },
        { QStringLiteral("presence"),
          queue(m_presence.now, config->tallyxMode() != Config::TallyxDisabled) },
        { QStringLiteral("notices"), LBAPI::instance()->notifications()->awaitingCount() },
        { QStringLiteral("clockSynchronised"),
          synchronised ? QJsonValue(*synchronised) : QJsonValue() },
        { QStringLiteral("watchdog"),
          QJsonObject { { QStringLiteral("enabled"), m_hasWatchdog },
                        { QStringLiteral("interval"), double(m_lifeInterval.count()) / 1000 },
                        { QStringLiteral("missed"), m_missed } } },
    };
}

QJsonObject KioskStatus::room() const
{
    const Config *config = Config::instance();
    return { { QStringLiteral("id"), config->plenarLocationId() },
             { QStringLiteral("name"), config->locationName() } };
}

QJsonObject KioskStatus::schedule() const
{
    const Config *config = Config::instance();
    const bool isFound = config->plenarLocationId() > 0 && config->plenarLocation();
    return { { QStringLiteral("received"), json(m_scheduleRead) },
             { QStringLiteral("events"), m_events },
             { QStringLiteral("roomFound"), isFound },
             { QStringLiteral("lastFailure"), m_scheduleFailure.toJson() } };
}

QJsonObject KioskStatus::reader() const
{
    const auto faults = LBAPI::instance()->cardReadiness()->faults();
    const bool isConnected = !m_port.isEmpty() && !faults.testFlag(CardReadiness::ReaderMissing);
    const bool isMissing = faults.testFlag(CardReadiness::ReaderMissing);
    const char *state = isMissing ? "missing" : isConnected ? "connected" : "searching";
    const char *logging = faults.testFlag(CardReadiness::Stopped) ? "stopped"
        : faults.testFlag(CardReadiness::NotKept)                 ? "no storage"
                                                                  : "works";
    return { { QStringLiteral("expected"), LBAPI::instance()->expectsCards() },
             { QStringLiteral("state"), QLatin1String(state) },
             { QStringLiteral("port"), isConnected ? QJsonValue(m_port) : QJsonValue() },
             { QStringLiteral("lastCard"), json(m_lastCard) },
             { QStringLiteral("logging"), QLatin1String(logging) } };
}

QJsonObject KioskStatus::queue(const QueueStatus &status, bool isEnabled)
{
    const QJsonObject failure { { QStringLiteral("time"), json(status.lastFailure) },
                                { QStringLiteral("reason"), status.lastReason } };
    return { { QStringLiteral("enabled"), isEnabled },
             { QStringLiteral("waiting"),
               status.waiting ? QJsonValue(*status.waiting) : QJsonValue() },
             { QStringLiteral("oldest"), json(status.oldest) },
             { QStringLiteral("sent"), status.sent },
             { QStringLiteral("refused"), status.refused },
             { QStringLiteral("lastSuccess"), json(status.lastSuccess) },
             { QStringLiteral("lastFailure"),
               status.lastFailure.isValid() ? QJsonValue(failure) : QJsonValue() } };
}

QJsonObject KioskStatus::records() const
{
    return { { QStringLiteral("format"), statusfiles::format },
             { QStringLiteral("attendance"), failedRecords(m_attendance.now) },
             { QStringLiteral("presence"), failedRecords(m_presence.now) } };
}

/** Follows a clock that was set: many machines learn the time only after the start. */
QDateTime KioskStatus::startTime()
{
    constexpr qint64 toleranceMs = 2000;
    const QDateTime computed = now().addMSecs(-m_uptime.elapsed());
    if (!m_started.isValid() || std::abs(m_started.msecsTo(computed)) > toleranceMs)
        m_started = computed;
    return m_started;
}
