// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import Lumenboard 1.0

import "../elements"

/** The bar at the top of a view: the way back, and a title that shrinks to fit. */
ToolBar {
    id: root

    property alias title: label.text
    /// room to the right of the title, px
    property real margin: 0

    signal backWanted

    Material.foreground: "white"

    Row {
        ToolButton {
            id: backButton

            objectName: "back"
            Accessible.name: qsTr("Back")
            font {
                family: "Font Awesome"
                pointSize: root.font.pointSize
                weight: Font.Black
            }
            text: "\uf137"
            onClicked: root.backWanted()
        }

        PlainLabel {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, root.width - backButton.width - root.margin)
            fontSizeMode: Text.HorizontalFit
            minimumPointSize: LBAPI.config.fontBaseSize
            wrapMode: Text.NoWrap
        }
    }
}
