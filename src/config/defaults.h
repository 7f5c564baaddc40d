// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "buildconfig.h"

#include <QString>

/** Default addresses of the services. The hosts are chosen at build time, the paths are fixed. */
namespace defaults {

/** A QDate::toString() format: everything but the date stands in single quotes. */
inline const QString eventDataUrlTemplate
    = QStringLiteral("'https://%1/rs/lumenboard/schedule/'yyyy-MM-dd")
          .arg(QLatin1String(buildconfig::plenarHost));
inline const QString keycloakUrl
    = QStringLiteral("https://%1/auth/realms/deskhub/protocol/openid-connect/token")
          .arg(QLatin1String(buildconfig::idHost));
inline const QString attendanceLogUrl
    = QStringLiteral("https://%1/rs/lumenboard-legacy/attendancelog")
          .arg(QLatin1String(buildconfig::plenarHost));
inline const QString tallyxLogUrl
    = QStringLiteral("https://%1/rs/log/v2").arg(QLatin1String(buildconfig::tallyxHost));
inline const QString quirlUrl
    = QStringLiteral("https://%1").arg(QLatin1String(buildconfig::quirlHost));

} // namespace defaults
