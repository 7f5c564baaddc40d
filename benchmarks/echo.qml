// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** Nothing but a rectangle, where the kiosk shows its notices, for as long as the owner says. */
Item {
    Rectangle {
        objectName: "notice"
        anchors.right: parent.right
        color: "black"
        height: parent.height
        visible: false
        width: parent.width / 2
    }
}
