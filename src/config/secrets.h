// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

/** What is wrong with the secrets in the settings. */
namespace secrets {

/** Those of the settings files @p files that hold a secret and that everybody can read. */
[[nodiscard]] QStringList readableByAll(const QStringList &files);

/**
 * Warns once of each such file behind the user's own, which alone is protected, and while the
 * screen has no name or secret to log in with. Call it like warnOfSettings().
 */
void warn();

} // namespace secrets
