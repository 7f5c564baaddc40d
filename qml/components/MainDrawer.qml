// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15

/** The side menu. */
Drawer {
    id: root

    /// the stack that menu entries push their views on
    property StackView stackView

    width: parent.width / 3
    height: parent.height
    // The style dims a dark page with a light veil.
    Overlay.modal: Rectangle {
        color: "#99000000"
    }

    Page {
        anchors.fill: parent
        background: null

        footer: Item {
            implicitHeight: version.implicitHeight + 5

            Label {
                id: version

                anchors {
                    right: parent.right
                    rightMargin: 10
                    bottom: parent.bottom
                    bottomMargin: 5
                }
                text: "v" + Qt.application.version
                textFormat: Text.PlainText
            }
        }
    }
}
