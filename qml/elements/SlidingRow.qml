// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** A row that slides to its new place when its items change; new items fade in. */
Row {
    id: root

    /// ms
    property int animationDuration: 500

    Behavior on x {
        NumberAnimation {
            duration: root.animationDuration
        }
    }
    add: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: root.animationDuration
        }
    }
}
