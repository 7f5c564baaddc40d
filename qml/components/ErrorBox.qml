// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

import "../common"
import "../elements"

/** A red box with an error message. */
Rectangle {
    id: root

    property alias text: message.text
    /// px
    property real maximumTextWidth: 600

    width: message.width + 20
    height: message.height + 20
    color: "red"

    Announcement {
        anchors.fill: parent
        text: message.text
    }

    StyledText {
        id: message

        width: Math.min(implicitWidth, root.maximumTextWidth)
        anchors.centerIn: parent
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        xstyle: Style.errorText
    }
}
