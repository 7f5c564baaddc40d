// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** A row that slides to a new x, which must not be held by anchors; new items fade in. */
Row {
    id: root

    /// ms
    property int animationDuration: 500
    /// false: moves at once
    property bool slides: true

    Behavior on x {
        enabled: root.slides

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
