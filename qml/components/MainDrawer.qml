// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import Lumenboard 1.0

import "../elements"

/** The side menu. */
Drawer {
    id: root

    /// the stack on which menu entries push their views
    property StackView stackView

    // The popup's own item has no other access; a drawer has no title.
    Component.onCompleted: contentItem.parent.Accessible.name = qsTr("Menu")
    width: parent.width / 3
    height: parent.height
    // The dark style would dim the page with a light colour.
    Overlay.modal: Rectangle {
        color: "#99000000"
    }

    Page {
        Accessible.name: qsTr("Menu")
        anchors.fill: parent
        background: null

        Column {
            anchors {
                left: parent.left
                right: parent.right
                margins: 10
            }
            spacing: 5

            Button {
                width: parent.width
                objectName: "registerTransponder"
                enabled: root.stackView !== null && root.stackView.depth === 1
                font {
                    // The style's capitals would turn "ß" into "SS".
                    capitalization: Font.MixedCase
                    pointSize: 2 * Qt.application.font.pointSize
                }
                text: qsTr("Register transponder")
                visible: LBAPI.config.tpRegModeQR || LBAPI.config.tpRegModeVK
                onClicked: {
                    root.stackView.push(Qt.resolvedUrl("../views/TransponderRegistration.qml"));
                    root.close();
                }
            }
        }

        footer: Item {
            implicitHeight: version.implicitHeight + 5

            PlainLabel {
                id: version

                anchors {
                    right: parent.right
                    rightMargin: 10
                    bottom: parent.bottom
                    bottomMargin: 5
                }
                text: "v" + Qt.application.version
            }
        }
    }
}
