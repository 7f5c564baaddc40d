// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/**
 * Triggers once at the next of 15 moments a second, the same ones for every FrameTimer.
 *
 * Any change draws the whole window again, which is expensive without a graphics processor. What
 * changes all the time therefore changes together, and only as often as the eye needs. Running
 * animations would draw each change twice.
 */
Timer {
    id: root

    /// ms
    readonly property int period: 66
    /// the number of the moment that was aimed at last
    property real moment: 0

    function schedule() {
        if (running)
            return;
        const now = Date.now();
        const next = Math.floor(now / period) + 1;
        // Timers may run ahead of the clock while animations run: never aim at a moment twice.
        moment = moment === next ? next + 1 : next;
        interval = moment * period - now;
        start();
    }
}
