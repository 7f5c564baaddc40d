// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/ratelimit.h"
#include "net/requestlimits.h"
#include "reader/linesplitter.h"
#include "spool/queuestatus.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QSerialPort>
#include <QTimer>

class CardLogger;

/**
 * Listens to the RFID reader on the serial line and logs each card, or hands it to the view that
 * waits for one. Finds the reader by itself, even after it was unplugged.
 *
 * Created without a parent in the GUI thread and moved to the attendance thread, where init()
 * creates everything else.
 */
class AttendanceWorker : public QObject
{
    Q_OBJECT

public:
    explicit AttendanceWorker(const RequestLimits &limits = {});
    ~AttendanceWorker() override;

Q_SIGNALS:
    /** A card was read while a view waited for it; @p tid as the reader sent it. */
    void transponderScanned(QString tid);
    void readerStateChanged(bool connected);
    /** @p kept is false while the disk takes no records, so that no card can be logged. */
    void recordsKeptChanged(bool kept);
    /** Nothing may be logged until the program restarts; the thread ends. */
    void loggingStopped();
    /** The reader was found; @p port is its name. Comes before readerStateChanged(true). */
    void readerOpened(QString port);
    /** A card was read, for whatever purpose. */
    void cardRead();
    /** How a queue does; each at most once a second. */
    void attendanceStatusChanged(QueueStatus status);
    void presenceStatusChanged(QueueStatus status);

public Q_SLOTS:
    void init();

private Q_SLOTS:
    void initSerialPort();
    void onSerialPortError(QSerialPort::SerialPortError err);
    static void onSerialPortAboutToClose();
    static void onSerialPortReadChannelFinished();
    void onSerialPortReadyRead();
    void processQueue();
    void onAccessTokenChanged(const QString &token);

private:
    void openSerialPort(const QString &name);
    void drain(QSerialPort &port);
    [[nodiscard]] bool processLines();
    void processAllLines();
    void processLine(const QByteArray &line);
    void onLoggingStopped();

    RequestLimits m_limits;
    QPointer<CardLogger> m_cards;
    QPointer<QSerialPort> m_port;
    QPointer<QTimer> m_retryTimer;
    LineSplitter m_lines;
    bool m_hasToken = false;
    RateLimit m_invalidLines { 5, std::chrono::seconds(10) }; ///< that people are told of
    QElapsedTimer m_clock;
};
