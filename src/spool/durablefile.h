// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/** Files that survive a power cut once a function has returned. */
namespace durablefile {

/** Ending of the hidden name under which a file is written before it takes its own. */
inline constexpr auto unfinishedEnding = ".lumenboard-part";

/**
 * Puts @p content into a new file @p path, for its owner alone: nobody sees less than the whole of
 * it. False if the name is taken. Throws AttendanceErrorException and leaves nothing behind.
 * @p beforeSync, if any, is called when all is written and only the disk has to be waited for.
 */
[[nodiscard]] bool create(const QString &path, const QByteArray &content,
                          const std::function<void()> &beforeSync = {});

/**
 * The same in the place of the file @p path: whoever looks sees the old content or the new one.
 * Throws AttendanceErrorException.
 */
void replace(const QString &path, const QByteArray &content);

/** Makes @p folder with all that is missing above it, lastingly; false on failure. */
[[nodiscard]] bool makeFolder(const QString &folder);

/** Makes names that were given or taken in @p folder last; false, and errno set, on failure. */
[[nodiscard]] bool syncFolder(const QString &folder);

} // namespace durablefile
