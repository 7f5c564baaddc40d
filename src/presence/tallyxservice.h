// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QJsonObject>

class QNetworkAccessManager;
class QNetworkReply;
class TallyxLogEntity;
struct RequestLimits;

/** Requests to the presence service and its responses. Attendance worker's thread. */
namespace tallyxservice {

/** Queries the status of the card's owner, within the configured time. */
[[nodiscard]] QNetworkReply *getStatus(QNetworkAccessManager &manager,
                                       const TallyxLogEntity &record);

/**
 * Posts @p record unchanged. Throws AttendanceWarningException if there is no access token; the
 * record then stays for later.
 */
[[nodiscard]] QNetworkReply *postLog(QNetworkAccessManager &manager, const TallyxLogEntity &record,
                                     const RequestLimits &limits);

/** The response to getStatus(); throws AttendanceWarningException if there is none. */
[[nodiscard]] QJsonObject readStatus(QNetworkReply &reply);

/**
 * The response to postLog(). Throws AttendanceWarningException unless it acknowledges the record.
 */
[[nodiscard]] QJsonObject readAcknowledgement(QNetworkReply &reply);

/** The text under @p key, cut to what the screen can show; null if there is none. */
[[nodiscard]] QString text(const QJsonObject &response, const char *key);

} // namespace tallyxservice
