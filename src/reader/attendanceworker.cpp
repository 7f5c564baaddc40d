// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "reader/attendanceworker.h"

#include "api/lbapi.h"
#include "base/connections.h"
#include "base/exceptions.h"
#include "base/failure.h"
#include "net/accesstoken.h"
#include "notifications/notificationhandle.h"
#include "reader/cardlogger.h"
#include "reader/readerport.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QSerialPortInfo>
#include <QThread>

#include <algorithm>
#include <cctype>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto retryInterval = 60s;
constexpr auto firstPassDelay = 10s; // for the records of an earlier run
/// Less than two cards. The rest waits in the kernel, so that a stop has few cards to save.
constexpr int deliveryBytes = 16;
constexpr int maxShownBytes = 64;

/// True while stale bytes are drained from a port that was just opened.
bool s_isDiscarding = false;
/// Errors since the port was last opened; set to 2 once a missing reader has been reported.
unsigned s_serialErrors = 0;

void showSerialError(const QString &message, std::chrono::milliseconds timeout)
{
    NotificationHandle::showError(AttendanceWorker::tr("Serial port error"), message,
                                  static_cast<uint>(timeout.count()));
}

/** What is wrong with the reader, in the language of the interface. */
QString shownReason(QSerialPort::SerialPortError error)
{
    switch (error) {
    case QSerialPort::ResourceError:
    case QSerialPort::DeviceNotFoundError:
        return AttendanceWorker::tr("The card reader has been disconnected.");
    case QSerialPort::PermissionError:
        return AttendanceWorker::tr("Another program uses the card reader, or access is denied.");
    default:
        return AttendanceWorker::tr("The card reader is out of order.");
    }
}

/** The number of a card. Checks each digit, since toULongLong() also accepts signs and prefixes. */
quint64 parseTransponderId(const QByteArray &line)
{
    const bool isHex = std::all_of(line.begin(), line.end(), [](char c) {
        return std::isxdigit(static_cast<unsigned char>(c)) != 0;
    });
    if (!isHex) {
        qCritical() << "Failed to parse transponder ID" << line;
        constexpr auto source
            = QT_TRANSLATE_NOOP("AttendanceWorker", "Failed to parse transponder ID. :O");
        throw AttendanceErrorException(QString::fromLatin1(source), AttendanceWorker::tr(source));
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
    if (m_port)
        m_port->close(); // while the slot that logs it can still be called
    // Process a card that is still buffered after an invalid line.
    if (m_cards && !m_cards->isStopped())
        processAllLines();
}

void AttendanceWorker::init()
{
    qDebug() << "Attendance worker thread started." << QThread::currentThread();
    m_cards = new CardLogger(m_limits, this);
    QTimer::singleShot(firstPassDelay, this, &AttendanceWorker::processQueue);
    connect(m_cards, &CardLogger::stopped, this, &AttendanceWorker::onLoggingStopped);
    connect(m_cards, &CardLogger::attendanceStatusChanged, this,
            &AttendanceWorker::attendanceStatusChanged);
    connect(m_cards, &CardLogger::presenceStatusChanged, this,
            &AttendanceWorker::presenceStatusChanged);
    const auto tell = [this] { Q_EMIT recordsKeptChanged(m_cards->keepsRecords()); };
    connect(m_cards, &CardLogger::keepingChanged, this, tell);
    tell();
    m_retryTimer = new QTimer(this);
    m_clock.start();
    connect(m_retryTimer, &QTimer::timeout, this, &AttendanceWorker::initSerialPort);
    connectChecked(this,
                   SIGNAL(transponderScanned(QString)), LBAPI::instance(),
                          SLOT(onTransponderScanned(QString)));
    m_hasToken = !accesstoken::current().isEmpty();
    connectChecked(LBAPI::instance(),
                   SIGNAL(accessTokenChanged(QString)), this, SLOT(onAccessTokenChanged(QString)));
    initSerialPort();
}

void AttendanceWorker::initSerialPort()
{
    if (m_port)
        return; // the open port is locked and cannot be opened again
    qDebug() << "Initializing serial port...";
    m_retryTimer->start(retryInterval);

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
    // Show it once, when the quick retry after an error finds no reader.
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
        return; // onSerialPortError() has handled it
    }
    if (!m_port)
        return; // opened with an error that onSerialPortError() has handled
    qInfo() << "Serial port opened.";
    m_retryTimer->stop();
    s_serialErrors = 0;
    drain(*port);
    if (!m_port)
        return; // it failed during the drain
    port->setReadBufferSize(deliveryBytes);
    connect(port, &QSerialPort::readyRead, this, &AttendanceWorker::onSerialPortReadyRead);
    qDebug() << "Waiting for cards.";
    Q_EMIT readerOpened(name);
    Q_EMIT readerStateChanged(true);
}

/** Discards what the reader sent before the port was opened: nobody waits for those cards. */
void AttendanceWorker::drain(QSerialPort &port)
{
    constexpr auto timeLimit = 2s;
    constexpr int maxBytes = 65536;
    constexpr int quietMs = 100;

    s_isDiscarding = true;
    QByteArray drained;
    QElapsedTimer clock;
    clock.start();
    while (
        drained.size() < maxBytes && !clock.hasExpired(std::chrono::milliseconds(timeLimit).count())
        && !QThread::currentThread()->isInterruptionRequested() && port.waitForReadyRead(quietMs))
        drained.append(port.readAll());
    s_isDiscarding = false;
    if (!drained.isEmpty())
        qWarning() << "Serial port had buffered data which was discarded:"
                   << drained.left(maxShownBytes) << drained.size() << "bytes";
}

void AttendanceWorker::onSerialPortError(QSerialPort::SerialPortError err)
{
    if (err == QSerialPort::NoError)
        return;
    if (err == QSerialPort::TimeoutError && s_isDiscarding)
        return; // the expected end of the drain

    QString reason;
    if (m_port) {
        reason = m_port->errorString();
        if (m_port->isOpen() && !s_isDiscarding)
            Q_EMIT readerStateChanged(false);
        // An unplugged port repeats its error endlessly; its end is still worth a log line.
        disconnect(m_port, &QSerialPort::errorOccurred, this, nullptr);
        m_port->deleteLater();
        m_port.clear();
        processAllLines();
    }

    constexpr unsigned quickRetries = 3;
    const bool isQuick = s_serialErrors++ < quickRetries;
    const std::chrono::seconds delay = isQuick ? 1s : retryInterval;
    m_retryTimer->start(delay);
    qWarning() << "Serial port error:" << err << reason << "Retrying in" << delay.count() << "s.";
    showSerialError(
        tr("%1\nRetrying in %2 seconds.").arg(shownReason(err), QString::number(delay.count())),
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
    if (!m_port || m_cards->isStopped())
        return;
    qDebug() << "Serial port is ready to be read." << m_port->bytesAvailable()
             << m_port->canReadLine() << m_lines.excerpt();
    m_lines.append(m_port->readAll());
    // One invalid line may hold up what came with it, but no backlog grows behind several.
    while (!processLines() && m_lines.size() > deliveryBytes)
        ;
}

/** Processes lines up to the first invalid one. Reports that one and returns false. */
bool AttendanceWorker::processLines()
{
    const auto failure = catchFailure([this] {
        while (const auto line = m_lines.takeLine())
            processLine(*line);
    });
    if (failure && m_invalidLines.admits(RateLimit::Time(m_clock.elapsed())))
        m_cards->reportFailure(*failure);
    return !failure;
}

/** Processes all whole lines in the buffer and discards the rest. */
void AttendanceWorker::processAllLines()
{
    while (!processLines())
        ;
    m_lines.clear();
}

void AttendanceWorker::processLine(const QByteArray &line)
{
    constexpr int idLength = 8;
    if (line.size() != idLength) {
        qWarning() << "Ignoring transponder ID with unusual length" << line.left(maxShownBytes);
        return;
    }
    const quint64 transponderId = parseTransponderId(line);
    if (LBAPI::instance()->takeScan()) {
        Q_EMIT transponderScanned(QString::fromLatin1(line));
    } else {
        qDebug() << "Logging" << transponderId << "...";
        m_cards->log(transponderId);
    }
    Q_EMIT cardRead();
}

void AttendanceWorker::processQueue()
{
    m_cards->processQueue();
}

/** Records of presence that waited for the first token need not wait any longer. */
void AttendanceWorker::onAccessTokenChanged(const QString &token)
{
    const bool hadToken = std::exchange(m_hasToken, !token.isEmpty());
    if (m_hasToken && !hadToken)
        m_cards->onTokenAvailable();
}

void AttendanceWorker::onLoggingStopped()
{
    Q_EMIT loggingStopped();
    QThread::currentThread()->exit();
}
