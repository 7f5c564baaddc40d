// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** A rectangle in the place of the kiosk's notices. The owner shows and hides it. */
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
