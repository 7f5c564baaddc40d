// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QString>

namespace simulator {

/// Whether the whole text has the form, a regular expression: Qt's own conversions take more than
/// the services do, such as a sign before a card's number.
[[nodiscard]] bool matches(const QString &text, const char *form);

/// A date and time as ISO 8601 writes them in full, or an invalid one.
[[nodiscard]] QDateTime isoDateTime(const QString &text);

} // namespace simulator
