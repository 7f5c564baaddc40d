// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Layouts 1.15
import Lumenboard 1.0

import "../common"
import "../elements"

/** One notice: icon, texts and controls, and the extra buttons below them. */
Item {
    id: root

    /// the LBNotification that is shown
    property QtObject notification
    property alias bgColor: background.color
    /// edge length of the side controls, px
    property int buttonSize: 75
    /// added by the first timer, px
    property int extraHeight: 0

    /// the layout's implicit height; assigned, since a binding would loop with wrapped texts
    property real layoutHeight: 0

    readonly property bool isLoading: Boolean(notification) && notification.type === LBNotification.LOADING

    height: layoutHeight + extraHeight
    onYChanged: guard.restart()
    onScaleChanged: guard.restart()
    transform: Translate {
        x: guard.offset
    }

    // The list keeps the height that a new notice had before its last layout pass. One more pixel
    // makes the list lay it out again once the add transition is over.
    Timer {
        interval: Style.notifications.td + 20
        running: true
        onTriggered: root.extraHeight += 1
    }

    Rectangle {
        id: background

        anchors.fill: parent
    }

    Announcement {
        anchors.fill: parent
        text: root.notification ? [root.notification.title, root.notification.message].filter(Boolean).join("\n") : ""
    }

    ColumnLayout {
        id: layout

        onImplicitHeightChanged: root.layoutHeight = implicitHeight
        Component.onCompleted: root.layoutHeight = implicitHeight
        anchors {
            left: parent.left
            right: parent.right
        }

        RowLayout {
            Image {
                id: icon

                readonly property bool isTurning: root.isLoading
                property real start: 0

                function turn() {
                    rotation = isTurning ? (Date.now() - start) % 2500 * 360 / 2500 : 0;
                    if (isTurning)
                        frame.schedule();
                }

                onIsTurningChanged: {
                    start = Date.now();
                    turn();
                }
                Layout.alignment: Qt.AlignTop
                Layout.preferredHeight: 2 * root.buttonSize
                Layout.preferredWidth: 2 * root.buttonSize
                source: root.notification ? "qrc:/icons/" + Style.notification.icon(root.notification.type) + ".svg" : ""
                sourceSize: Qt.size(2 * root.buttonSize, 2 * root.buttonSize)

                FrameTimer {
                    id: frame

                    onTriggered: icon.turn()
                }
            }

            ColumnLayout {
                Layout.alignment: Qt.AlignTop
                Layout.fillWidth: true
                Layout.topMargin: 16
                spacing: 6

                StyledText {
                    Layout.fillWidth: true
                    text: root.notification ? root.notification.title : ""
                    wrapMode: Text.Wrap
                    xstyle: Style.notification.title
                }

                StyledText {
                    Layout.bottomMargin: 16
                    Layout.fillWidth: true
                    text: root.notification ? root.notification.message : ""
                    wrapMode: Text.Wrap
                    xstyle: Style.notification.message
                }
            }

            NotificationControls {
                id: controls

                Layout.alignment: Qt.AlignTop
                notification: root.notification
                size: root.buttonSize
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.margins: 8
            implicitHeight: buttonRow.height * buttonRow.scale
            visible: buttons.count > 0

            Row {
                id: buttonRow

                anchors.centerIn: parent
                // Shrink rather than cut: people have to read a button before they press it.
                scale: Math.min(1, (root.width - 2 * 8) / Math.max(1, width))
                spacing: 24

                Repeater {
                    id: buttons

                    model: root.notification ? root.notification.buttons : []
                    delegate: NotificationExtraButton {
                        required property int index
                        required property var modelData

                        button: modelData
                        onPressedWhenEnabled: root.notification.clickButton(index)
                    }
                }
            }
        }
    }

    // A notice that has just come or moved may lie under a finger aimed at its neighbour.
    PressGuard {
        id: guard

        objectName: "guard"
        items: [controls, buttonRow]
    }
}
