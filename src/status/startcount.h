// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/**
 * Counts the starts of the kiosk since boot, and the ends that nobody asked for. The file is in the
 * runtime folder, which a restart by the service manager leaves alone.
 */
struct StartCount
{
    int starts = 0;
    int crashes = 0; ///< also kills and what the watchdog ended
    bool isRunning = false; ///< no clean end was noted

    /** The counts that @p folder holds; zeros if there are none. */
    [[nodiscard]] static StartCount read(const QString &folder);

    /** Counts a start, and a crash if the run before noted no end. */
    void noteStart();
    /** Writes the counts into @p folder. A failure is logged. */
    void write(const QString &folder) const;
};
