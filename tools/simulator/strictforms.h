// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QString>

namespace simulator {

/// Whether the whole text matches the regular expression. Qt's conversions accept more than the
/// services do, such as a sign before a card number.
[[nodiscard]] bool matches(const QString &text, const char *form);

/// A complete ISO 8601 date and time; invalid for any other text.
[[nodiscard]] QDateTime isoDateTime(const QString &text);

} // namespace simulator
