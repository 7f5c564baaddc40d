// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/** Keys in the settings file and in the configuration service's document; see settingstable.h. */
namespace keys {

inline const QString hideMouseCursor = QStringLiteral("hideMouseCursor");
inline const QString refreshInterval = QStringLiteral("refreshInterval");
inline const QString inactivityTimeout = QStringLiteral("inactivityTimeout");
inline const QString defaultView = QStringLiteral("defaultView");
inline const QString eventDataUrlTemplate = QStringLiteral("eventDataUrlTemplate");
inline const QString keycloakUrl = QStringLiteral("Keycloak/url");
inline const QString keycloakClientId = QStringLiteral("Keycloak/clientId");
inline const QString keycloakClientSecret = QStringLiteral("Keycloak/clientSecret");
inline const QString overrideDate = QStringLiteral("overrideDate");
inline const QString overrideDateDate = QStringLiteral("overrideDateDate");
inline const QString userAgent = QStringLiteral("userAgent");
inline const QString locationId = QStringLiteral("locationId");
inline const QString locationName = QStringLiteral("locationName");
inline const QString plenarLocationId = QStringLiteral("plenarLocationId");
inline const QString fontBaseSize = QStringLiteral("fontBaseSize");
inline const QString attendanceEnabled = QStringLiteral("attendanceEnabled");
inline const QString attendanceLogUrl = QStringLiteral("attendanceLogUrl");
inline const QString attendanceSpoolDir = QStringLiteral("attendanceSpoolDir");
inline const QString attendanceNameCacheFile = QStringLiteral("attendanceNameCacheFile");
inline const QString tallyxMode = QStringLiteral("tallyxMode");
inline const QString tallyxLogUrl = QStringLiteral("tallyxLogUrl");
inline const QString tallyxSpoolDir = QStringLiteral("tallyxSpoolDir");
inline const QString tallyxGetStatusTimeout = QStringLiteral("tallyxGetStatusTimeout");
inline const QString tallyxConfirmTimeout = QStringLiteral("tallyxConfirmTimeout");
inline const QString tallyxNotificationTimeout = QStringLiteral("tallyxNotificationTimeout");
inline const QString quirlUrl = QStringLiteral("quirlUrl");
inline const QString tpRegModeQR = QStringLiteral("tpRegModeQR");
inline const QString tpRegModeVK = QStringLiteral("tpRegModeVK");
inline const QString preferredTpRegMode = QStringLiteral("preferredTpRegMode");

} // namespace keys
