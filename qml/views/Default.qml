// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0

import "../common"
import "../elements"

/** The clock view: time, date and the name of the place. */
Item {
    id: root

    readonly property var locale: Qt.locale("de_DE")

    Timer {
        interval: 500
        repeat: true
        running: root.visible
        triggeredOnStart: true
        onTriggered: {
            const now = new Date();
            time.text = now.toLocaleTimeString(root.locale, "H:mm");
            date.text = now.toLocaleDateString(root.locale, "dddd, d.M.yy");
        }
    }

    Item {
        id: block

        width: 0.75 * parent.width
        height: 0.66 * parent.height
        anchors.centerIn: parent

        Image {
            id: logo

            // Two thirds of the block, unless the time needs the room.
            readonly property real edge: Math.max(0, Math.min(0.66 * block.height, block.width - clock.width - 16))

            width: edge
            height: edge
            anchors {
                top: parent.top
                right: parent.right
            }
            source: "qrc:/logos/logo-green.svg"
            sourceSize: Qt.size(edge, edge)
        }

        Column {
            id: clock

            anchors {
                left: parent.left
                verticalCenter: logo.verticalCenter
            }
            spacing: 16

            StyledText {
                id: time

                Accessible.name: text
                Accessible.role: Accessible.StaticText
                // On a narrow screen the time leaves room for the logo.
                width: Math.min(Math.ceil(timeMetrics.advanceWidth), 0.58 * block.width)
                height: contentHeight
                fontSizeMode: Text.HorizontalFit
                minimumPointSize: 20
                xstyle: Style.dvTime

                TextMetrics {
                    id: timeMetrics

                    font: time.font
                    text: time.text
                }
            }

            StyledText {
                id: date

                Accessible.name: text
                Accessible.role: Accessible.StaticText
                anchors.horizontalCenter: time.horizontalCenter
                xstyle: Style.dvDate
            }
        }

        StyledText {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            anchors {
                left: parent.left
                right: parent.right
                bottom: parent.bottom
            }
            height: parent.height - Math.max(logo.height, clock.y + clock.height) - 16
            elide: Text.ElideRight
            fontSizeMode: Text.Fit
            horizontalAlignment: Text.AlignRight
            minimumPointSize: 2 * LBAPI.config.fontBaseSize
            text: LBAPI.config.locationName
            verticalAlignment: Text.AlignBottom
            wrapMode: Text.Wrap
            xstyle: Style.dvLocationName
        }
    }
}
