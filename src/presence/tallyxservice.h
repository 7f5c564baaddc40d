// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QJsonObject>

class QNetworkAccessManager;
class QNetworkReply;
class TallyxLogEntity;
struct RequestLimits;

/** The requests to the presence service, in the attendance worker's thread. */
namespace tallyxservice {

/** Asks for the presence of the record's person; given up after the configured time. */
[[nodiscard]] QNetworkReply *getStatus(QNetworkAccessManager &manager,
                                       const TallyxLogEntity &record);

/**
 * Posts @p record as it is. Throws AttendanceWarningException when there is no access token: it
 * then stays for later.
 */
[[nodiscard]] QNetworkReply *postLog(QNetworkAccessManager &manager, const TallyxLogEntity &record,
                                     const RequestLimits &limits);

/** The answer to getStatus(); throws AttendanceWarningException if it can not be had. */
[[nodiscard]] QJsonObject readStatus(QNetworkReply &reply);

/** The answer to postLog(), which acknowledges the record; throws AttendanceWarningException. */
[[nodiscard]] QJsonObject readAcknowledgement(QNetworkReply &reply);

/** The text under @p key, short enough for the screen; null if there is none. */
[[nodiscard]] QString text(const QJsonObject &answer, const char *key);

} // namespace tallyxservice
