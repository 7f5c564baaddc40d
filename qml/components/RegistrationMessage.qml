// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls.Material 2.15

import "../elements"

/** A large heading and a text, with any child items below them. */
Column {
    id: root

    property alias heading: heading.text
    property alias text: label.text

    spacing: label.font.pixelSize

    PlainLabel {
        id: heading

        width: parent.width
        color: Material.accent
        font.pointSize: 2 * label.font.pointSize
        visible: text !== ""
    }

    PlainLabel {
        id: label

        width: parent.width

        Announcement {
            anchors.fill: parent
            text: root.visible ? (heading.text + " " + label.text).trim() : ""
        }
    }
}
