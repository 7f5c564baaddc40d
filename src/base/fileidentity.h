// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <utility>

/** Tells whether a file is still the same: inode and modification time in ns. */
using FileIdentity = std::pair<quint64, qint64>;

/** The identity of the file @p path, of the target if it is a link; zeros if there is none. */
[[nodiscard]] FileIdentity fileIdentity(const QString &path);
