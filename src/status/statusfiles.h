// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/** Names of the files that the kiosk leaves in its runtime folder for "--status" and "--spool". */
namespace statusfiles {

inline const QString status = QStringLiteral("status.json");
inline const QString spool = QStringLiteral("spool.json");
inline const QString starts = QStringLiteral("starts.json");
/// Of "format" in the first two; a reader refuses another one.
constexpr int format = 1;

} // namespace statusfiles
