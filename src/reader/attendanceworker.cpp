// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "reader/attendanceworker.h"

#include "api/lbapi.h"
#include "attendance/attendancenamecache.h"
#include "attendance/attendancequeue.h"
#include "base/connections.h"
#include "base/exceptions.h"
#include "base/failure.h"
#include "net/xnetworkaccessmanager.h"
#include "notifications/notificationhandle.h"
#include "presence/tallyxqueue.h"
#include "reader/readerport.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QSerialPortInfo>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <pthread.h>

using namespace std::chrono_literals;

namespace {

constexpr auto unpluggedRetry = 60s;

/// While stale bytes are drained from a port that was just opened.
bool s_isDiscarding = false;
/// Errors of the port since it could last be opened; 2 also after a reader was reported missing.
unsigned s_serialErrors = 0;
/// Outlives the worker: a rebuilt window must not begin again what was stopped for good.
std::atomic<bool> s_isLoggingStopped = false;

void showSerialError(const QString &message, std::chrono::milliseconds timeout)
{
    NotificationHandle::showError(AttendanceWorker::tr("Serial port error"), message,
                                  static_cast<uint>(timeout.count()));
}

/** The number of a card; stricter than Qt, which also takes signs and prefixes. */
quint64 parseTransponderId(const QByteArray &line)
{
    const bool isHex = std::all_of(line.begin(), line.end(), [](char c) {
        return std::isxdigit(static_cast<unsigned char>(c)) != 0;
    });
    if (!isHex) {
        qCritical() << "Failed to parse transponder ID" << line;
        throw AttendanceErrorException(AttendanceWorker::tr("Failed to parse transponder ID. :O"));
    }
    return line.toULongLong(nullptr, 16);
}

} // namespace

AttendanceWorker::AttendanceWorker(const RequestLimits &limits)
    : m_limits(limits)
{
}

AttendanceWorker::~AttendanceWorker()
{
    // Whoever held up a card behind a line that was none has been read.
    if (m_queue && !isLoggingStopped())
        handleRest();
    // Children go in the order of their making: requests have to go before their manager, and what
    // they leave open on the screen before them.
    delete m_presence;
    delete m_queue;
}

bool AttendanceWorker::isLoggingStopped()
{
    return s_isLoggingStopped;
}

void AttendanceWorker::init()
{
    // Slots of QThread::started run with cancellation disabled: without this a worker that blocks
    // here could not even be terminated, and the program would never end.
    pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, nullptr);

    qDebug() << "Attendance worker thread started." << QThread::currentThread();
    m_names = new AttendanceNameCache(this);
    m_manager = new XNetworkAccessManager(this);
    m_queue = new AttendanceQueue(*m_manager, *m_names, m_limits, this);
    m_presence = new TallyxQueue(*m_manager, m_limits, this);

    m_retryTimer = new QTimer(this);
    connect(m_retryTimer, &QTimer::timeout, this, &AttendanceWorker::initSerialPort);
    m_queueTimer = new QTimer(this);
    m_queueTimer->setSingleShot(true);
    connect(m_queueTimer, &QTimer::timeout, this, &AttendanceWorker::processQueue);
    connect(m_queue, &AttendanceQueue::retryWanted, m_queueTimer,
            [timer = m_queueTimer](std::chrono::milliseconds delay) { timer->start(delay); });
    connect(m_presence, &TallyxQueue::retryWanted, m_queueTimer,
            [timer = m_queueTimer](std::chrono::milliseconds delay) {
                if (!timer->isActive() || timer->remainingTimeAsDuration() > delay)
                    timer->start(delay);
            });
    connect(m_queue, &AttendanceQueue::passFinished, m_presence, &TallyxQueue::startPass);
    connect(m_queue, &AttendanceQueue::freshChanged, this, &AttendanceWorker::makeRoomForCards);
    connect(m_presence, &TallyxQueue::freshChanged, this, &AttendanceWorker::makeRoomForCards);
    connect(m_queue, &AttendanceQueue::fatalStop, this, &AttendanceWorker::stopLogging);
    connect(m_presence, &TallyxQueue::fatalStop, this, &AttendanceWorker::stopLogging);
    auto *saveTimer = new QTimer(this);
    connectChecked(saveTimer, SIGNAL(timeout()), m_names, SLOT(save()));
    saveTimer->start(1h);

    connectChecked(this,
                   SIGNAL(transponderScanned(QString)), LBAPI::instance(),
                          SLOT(onTransponderScanned(QString)));
    m_queueTimer->start(10s); // for what an earlier run has left
    initSerialPort();
}

void AttendanceWorker::initSerialPort()
{
    if (m_port)
        return; // a second one would only be refused by the lock of the first
    qDebug() << "Initializing serial port...";
    m_retryTimer->start(unpluggedRetry);

    QVector<PortTraits> ports;
    const auto available = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : available) {
        qDebug() << port.portName() << port.description() << port.manufacturer()
                 << port.systemLocation() << port.vendorIdentifier() << port.productIdentifier();
        ports.append(traitsOf(port));
    }
    const QString name = chooseReaderPort(ports);
    if (!name.isEmpty()) {
        openSerialPort(name);
        return;
    }
    qWarning() << "No serial port found.";
    // Told once, when a reader that worked is gone for good.
    if (s_serialErrors == 1) {
        s_serialErrors = 2;
        showSerialError(tr("No serial port found."), 30s);
    }
}

void AttendanceWorker::openSerialPort(const QString &name)
{
    qInfo() << "Using serial port" << name;
    auto *port = new QSerialPort(name, this);
    m_port = port;
    connect(port, &QSerialPort::errorOccurred, this, &AttendanceWorker::onSerialPortError);
    connect(port, &QSerialPort::aboutToClose, this, &AttendanceWorker::onSerialPortAboutToClose);
    connect(port, &QSerialPort::readChannelFinished, this,
            &AttendanceWorker::onSerialPortReadChannelFinished);
    if (!port->open(QIODevice::ReadOnly)) {
        qCritical() << "Failed to open serial port." << port->error() << port->errorString();
        return; // its error has been handled meanwhile
    }
    if (!m_port)
        return; // opened, but not without an error, which has been handled as well
    qInfo() << "Serial port opened.";
    m_retryTimer->stop();
    s_serialErrors = 0;
    drain(*port);
    if (!m_port)
        return; // it failed meanwhile
    connect(port, &QSerialPort::readyRead, this, &AttendanceWorker::onSerialPortReadyRead);
    qDebug() << "Waiting for cards.";
    Q_EMIT readerStateChanged(true);
}

/** What was read before anybody listened is no card that somebody holds up now. */
void AttendanceWorker::drain(QSerialPort &port)
{
    constexpr auto longest = 2s;
    constexpr int most = 65536; // bytes
    constexpr int quietMs = 100;

    s_isDiscarding = true;
    QByteArray drained;
    QElapsedTimer clock;
    clock.start();
    while (drained.size() < most && !clock.hasExpired(std::chrono::milliseconds(longest).count())
           && !QThread::currentThread()->isInterruptionRequested()
           && port.waitForReadyRead(quietMs))
        drained.append(port.readAll());
    s_isDiscarding = false;
    if (!drained.isEmpty())
        qWarning() << "Serial port had buffered data which was discarded:" << drained;
}

void AttendanceWorker::onSerialPortError(QSerialPort::SerialPortError err)
{
    if (err == QSerialPort::NoError)
        return;
    if (err == QSerialPort::TimeoutError && s_isDiscarding)
        return; // how draining ends

    QString reason;
    if (m_port) {
        reason = m_port->errorString();
        if (m_port->isOpen() && !s_isDiscarding)
            Q_EMIT readerStateChanged(false);
        m_port->disconnect(this); // a port that hung up reports it without end
        m_port->deleteLater();
        m_port.clear();
        handleRest();
    }

    constexpr unsigned quickRetries = 3;
    const bool isQuick = s_serialErrors++ < quickRetries;
    const std::chrono::seconds delay = isQuick ? 1s : unpluggedRetry;
    m_retryTimer->start(delay);
    showSerialError(tr("%1 %2\nRetrying in %3 seconds.")
                        .arg(QString::number(err), reason, QString::number(delay.count())),
                    isQuick ? 5s : 60s);
}

void AttendanceWorker::onSerialPortAboutToClose()
{
    qDebug() << "Serial port about to close.";
}

void AttendanceWorker::onSerialPortReadChannelFinished()
{
    qDebug() << "onSerialPortReadChannelFinished()";
}

void AttendanceWorker::onSerialPortReadyRead()
{
    if (!m_port || isLoggingStopped())
        return;
    qDebug() << "Serial port is ready to be read." << m_port->bytesAvailable()
             << m_port->canReadLine() << m_lines.excerpt();
    m_lines.append(m_port->readAll());
    (void)handleLines();
    m_lines.limitBacklog();
}

/** Up to the first that is no card, of which the person is told; false then. */
bool AttendanceWorker::handleLines()
{
    const auto failure = catchFailure([this] {
        while (const auto line = m_lines.takeLine())
            handleCard(*line);
    });
    if (failure)
        m_queue->reportFailure(*failure);
    return !failure;
}

/** Whoever held up a card before the reader vanished has been read. */
void AttendanceWorker::handleRest()
{
    while (!handleLines())
        ;
    m_lines.clear();
}

void AttendanceWorker::handleCard(const QByteArray &line)
{
    constexpr int idLength = 8;
    constexpr int longestShown = 64;
    if (line.size() != idLength) {
        qWarning() << "Ignoring transponder ID with unusual length" << line.left(longestShown);
        return;
    }
    const quint64 transponderId = parseTransponderId(line);
    if (LBAPI::instance()->scanTransponder()) {
        Q_EMIT transponderScanned(QString::fromLatin1(line));
        return;
    }
    qDebug() << "Logging" << transponderId << "...";
    if (Config::instance()->attendanceEnabled())
        m_queue->log(transponderId);
    if (Config::instance()->tallyxMode() != Config::TallyxDisabled)
        m_presence->begin(transponderId);
}

void AttendanceWorker::processQueue()
{
    if (isLoggingStopped())
        return;
    if (m_queue->hasOutstanding() || m_presence->hasOutstanding()) {
        qDebug() << "ongoing requests - queue processing deferred";
        m_queueTimer->start(10s);
        return;
    }
    m_queue->startPass();
}

void AttendanceWorker::makeRoomForCards()
{
    const bool isHeld = m_queue->hasFresh() || m_presence->hasFresh();
    m_queue->setPaused(isHeld);
    m_presence->setPaused(isHeld);
}

/** A record that might be logged twice is considered worse than none being logged. */
void AttendanceWorker::stopLogging()
{
    s_isLoggingStopped = true;
    m_presence->stop();
    QThread::currentThread()->exit();
}
