// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15

import "../elements"

/** The controls at the side of a notification card, each there only when it applies. */
ColumnLayout {
    id: root

    property QtObject notification
    /// edge length of each control, px
    property int size: 75

    Image {
        objectName: "close"
        Layout.preferredHeight: root.size
        Layout.preferredWidth: root.size
        source: "qrc:/icons/close.svg"
        sourceSize: Qt.size(root.size, root.size)
        visible: Boolean(root.notification) && root.notification.closable

        MouseArea {
            anchors.fill: parent
            onClicked: root.notification.remove()
        }
    }

    Button {
        objectName: "confirm"
        Layout.preferredHeight: root.size
        Layout.preferredWidth: root.size
        Material.background: Material.Green
        icon {
            source: "qrc:/fa/check.svg"
            width: 0.8 * root.size
            height: 0.8 * root.size
        }
        padding: 0
        visible: Boolean(root.notification) && root.notification.confirmable
        onClicked: root.notification.confirm()
    }

    ProgressCircle {
        id: countdown

        objectName: "countdown"
        Layout.preferredHeight: root.size
        Layout.preferredWidth: root.size
        maxValue: root.notification ? root.notification.timeout : 0
        visible: Boolean(root.notification) && root.notification.timeout > 0

        Timer {
            interval: 10
            repeat: true
            running: countdown.visible
            triggeredOnStart: true
            onTriggered: countdown.currentValue = root.notification.remainingTime()
        }

        MouseArea {
            anchors.fill: parent
            onClicked: {
                if (!root.notification.timeoutCancelable)
                    return;
                root.notification.timeout = 0;
                root.notification.closable = true;
            }
        }
    }

    Button {
        objectName: "cancel"
        Layout.preferredHeight: root.size
        Layout.preferredWidth: root.size
        Material.background: Material.Red
        icon {
            source: "qrc:/fa/times.svg"
            width: 0.8 * root.size
            height: root.size
        }
        padding: 0
        visible: Boolean(root.notification) && root.notification.cancelable
        onClicked: root.notification.cancel()
    }
}
