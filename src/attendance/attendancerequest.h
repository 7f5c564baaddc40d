// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "notifications/notificationhandle.h"

#include <QDateTime>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>

#include <exception>

class AttendanceResponse;
class QNetworkAccessManager;
class QXmlStreamReader;
struct RequestLimits;

/**
 * One attendance record on its way to the service: builds the XML document, signs and posts it, and
 * reads the answer. The document as first built is also what the spool holds.
 *
 * Lives in the attendance worker's thread.
 */
class AttendanceRequest : public QObject
{
    Q_OBJECT

public:
    /** The record of a card that is read now. */
    explicit AttendanceRequest(quint64 transponderId, QObject *parent = nullptr);

    /** The record in the file @p spoolPath. Throws AttendanceErrorException if it holds none. */
    explicit AttendanceRequest(const QString &spoolPath, QObject *parent = nullptr);

    /** Whether the record was read from the spool: nobody waits for the answer. */
    [[nodiscard]] bool isDelayed() const { return m_isDelayed; }
    [[nodiscard]] quint64 transponderId() const { return m_transponderId; }
    [[nodiscard]] int locationId() const { return m_locationId; }
    /** What tells the person. */
    [[nodiscard]] const NotificationHandle &notification() const { return m_notification; }
    void setNotification(const NotificationHandle &shown) { m_notification = shown; }
    /** The file with this record; empty as long as there is none. */
    [[nodiscard]] QString spoolPath() const { return m_spoolPath; }
    void setSpoolPath(const QString &path) { m_spoolPath = path; }
    /** The document of the latest build(). */
    [[nodiscard]] const QByteArray &data() const { return m_data; }
    /** Whether the service sent any answer, and be it a refusal. */
    [[nodiscard]] bool wasAnswered() const { return m_wasAnswered; }

    /** Makes the document anew; that of a delayed record tells how long it has waited. */
    void build();
    /** Signs the document and posts it; succeeded() or failed() follow. */
    void send(QNetworkAccessManager &manager, const RequestLimits &limits);

Q_SIGNALS:
    void succeeded(const AttendanceResponse &response);
    /** @p exception as it was thrown. */
    void failed(const std::exception_ptr &exception);

private Q_SLOTS:
    void onFinished();

private:
    void read(QXmlStreamReader &reader);

    QDateTime m_requestTime;
    bool m_isDelayed;
    int m_locationId = 0;
    quint64 m_transponderId = 0;
    NotificationHandle m_notification;
    QString m_spoolPath;
    QByteArray m_data;
    QPointer<QNetworkReply> m_reply;
    bool m_wasAnswered = false;
};
