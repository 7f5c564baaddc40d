// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"
#include "reader/linesplitter.h"

#include <QObject>
#include <QPointer>
#include <QSerialPort>
#include <QTimer>

class AttendanceNameCache;
class AttendanceQueue;
class TallyxQueue;
class XNetworkAccessManager;

/**
 * Listens to the RFID reader on the serial line and has each card logged, or hands it to the view
 * that waits for one. Finds the reader by itself, also after it was unplugged.
 *
 * Made without a parent in the GUI thread, moved to the attendance thread, where init() makes
 * everything else.
 */
class AttendanceWorker : public QObject
{
    Q_OBJECT

public:
    explicit AttendanceWorker(const RequestLimits &limits = {});
    ~AttendanceWorker() override;

    /** Whether logging was stopped for good, until the program starts anew. Any thread. */
    [[nodiscard]] static bool isLoggingStopped();

Q_SIGNALS:
    /** A card was read while a view waited for it; @p tid as the reader sent it. */
    void transponderScanned(QString tid);
    void readerStateChanged(bool connected);

public Q_SLOTS:
    void init();

private Q_SLOTS:
    void initSerialPort();
    void onSerialPortError(QSerialPort::SerialPortError err);
    static void onSerialPortAboutToClose();
    static void onSerialPortReadChannelFinished();
    void onSerialPortReadyRead();
    void processQueue();

private:
    void openSerialPort(const QString &name);
    void drain(QSerialPort &port);
    [[nodiscard]] bool handleLines();
    void handleRest();
    void handleCard(const QByteArray &line);
    void makeRoomForCards();
    void stopLogging();

    RequestLimits m_limits;
    QPointer<XNetworkAccessManager> m_manager;
    QPointer<AttendanceNameCache> m_names;
    QPointer<AttendanceQueue> m_queue;
    QPointer<TallyxQueue> m_presence;
    QPointer<QSerialPort> m_port;
    QPointer<QTimer> m_retryTimer;
    QPointer<QTimer> m_queueTimer;
    LineSplitter m_lines;
};
