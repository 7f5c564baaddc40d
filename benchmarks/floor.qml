// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.VirtualKeyboard 2.15

/** The minimum for a program of this kind: a page, a stack view and the keyboard. */
Page {
    id: root

    /// true to show the time, as the clock view does
    property bool showsClock: false
    /// true to pulse a rectangle, as large as the button that glows in a question
    property bool pulses: false
    /// the entries of the list; refresh() replaces them all
    property var entries: []

    /** Rebuilds the view with @p entries, as the kiosk does with a schedule. */
    function refresh(entries) {
        root.entries = entries;
        stackView.clear(StackView.Immediate);
        stackView.push(contentView, {}, StackView.Immediate);
    }

    Material.theme: Material.Dark

    StackView {
        id: stackView

        anchors.fill: parent
        initialItem: root.showsClock ? clockView : contentView
    }

    Rectangle {
        anchors.centerIn: parent
        color: Material.accent
        height: 60
        visible: root.pulses
        width: 220

        SequentialAnimation on opacity {
            loops: Animation.Infinite
            running: root.pulses

            NumberAnimation {
                from: 0
                to: 1
                duration: 500
            }
            NumberAnimation {
                from: 1
                to: 0
                duration: 500
            }
        }
    }

    InputPanel {
        y: root.height
        width: root.width
    }

    Component {
        id: contentView

        Item {
            Label {
                id: title

                anchors.horizontalCenter: list.horizontalCenter
                font.pointSize: 28
                text: "Hörsaal 1"
            }

            ListView {
                id: list

                anchors {
                    top: title.bottom
                    right: parent.right
                    bottom: parent.bottom
                }
                width: parent.width / 3
                clip: true
                model: root.entries
                delegate: Label {
                    required property string modelData

                    height: 120
                    text: modelData
                }
            }
        }
    }

    Component {
        id: clockView

        Item {
            readonly property var locale: Qt.locale("de_DE")

            Timer {
                interval: 500
                repeat: true
                running: true
                triggeredOnStart: true
                onTriggered: {
                    const now = new Date();
                    time.text = now.toLocaleTimeString(parent.locale, "H:mm");
                    date.text = now.toLocaleDateString(parent.locale, "dddd, d.M.yy");
                }
            }

            Column {
                anchors.centerIn: parent
                spacing: 16

                Text {
                    id: time

                    color: "white"
                    font.bold: true
                    font.pointSize: 168
                }

                Text {
                    id: date

                    anchors.horizontalCenter: time.horizontalCenter
                    color: "white"
                    font.pointSize: 30
                }
            }

            Text {
                anchors {
                    right: parent.right
                    bottom: parent.bottom
                }
                color: "white"
                font.pointSize: 60
                font.weight: Font.Black
                text: "Hörsaal 1"
            }
        }
    }
}
