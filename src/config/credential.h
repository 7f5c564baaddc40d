// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

/**
 * The credential that systemd gives the service for the setting @p key, whose last part is its
 * name (`LoadCredential=clientSecret:PATH`); nothing if there is none. Any thread.
 */
[[nodiscard]] std::optional<QString> credential(const QString &key);
