// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/failure.h"
#include "notifications/notificationhandle.h"
#include "spool/spool.h"

#include <QDateTime>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>

class AttendanceResponse;
class QNetworkAccessManager;
class QXmlStreamReader;
struct RequestLimits;

/** The spool of attendance records. */
[[nodiscard]] Spool attendanceSpool();

/**
 * One attendance record on its way to the service: builds the XML document, signs and posts it, and
 * reads the response. The spool holds the document as it was first built.
 *
 * Lives in the attendance worker's thread.
 */
class AttendanceRequest : public QObject
{
    Q_OBJECT

public:
    /** The record of a card that has just been read. */
    explicit AttendanceRequest(quint64 transponderId, QObject *parent = nullptr);

    /** The record in the file @p spoolPath. Throws AttendanceErrorException if there is none. */
    explicit AttendanceRequest(const QString &spoolPath, QObject *parent = nullptr);

    [[nodiscard]] quint64 transponderId() const { return m_transponderId; }
    [[nodiscard]] int locationId() const { return m_locationId; }
    /** The notice for the waiting person. */
    [[nodiscard]] const NotificationHandle &notification() const { return m_notification; }
    void setNotification(const NotificationHandle &shown) { m_notification = shown; }
    /** The file with this record; empty until it is on disk. */
    [[nodiscard]] QString spoolPath() const { return m_spoolPath; }
    void setSpoolPath(const QString &path) { m_spoolPath = path; }
    /** True if the file of the record exists. */
    [[nodiscard]] bool isOnDisk() const;
    /** The document of the latest build(). */
    [[nodiscard]] const QByteArray &data() const { return m_data; }

    /** Builds the document; for a record from the spool, with the time since the card was read. */
    void build();
    /** Signs and posts the document; emits finished() once. */
    void send(QNetworkAccessManager &manager, const RequestLimits &limits);

Q_SIGNALS:
    /** @p response is null after a failure, and lives as long as the call. */
    void finished(const RecordOutcome &outcome, const AttendanceResponse *response);

private Q_SLOTS:
    void onFinished();

private:
    void read(QXmlStreamReader &reader);

    QDateTime m_requestTime;
    bool m_isDelayed; ///< read from the spool
    int m_locationId = 0;
    quint64 m_transponderId = 0;
    NotificationHandle m_notification;
    QString m_spoolPath;
    QByteArray m_data;
    QPointer<QNetworkReply> m_reply;
};
