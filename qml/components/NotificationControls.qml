// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Layouts 1.15

import "../common"
import "../elements"

/** The controls at the side of a notice; all but the first exist only while they apply. */
ColumnLayout {
    id: root

    property QtObject notification
    /// edge length of each control, px
    property int size: 75
    readonly property bool isCancelable: Boolean(notification) && notification.timeoutCancelable

    function stopCountdown() {
        if (!isCancelable)
            return;
        notification.timeout = 0;
        notification.closable = true;
    }

    Image {
        objectName: "close"
        Accessible.name: qsTr("Close")
        Accessible.role: Accessible.Button
        Accessible.onPressAction: root.notification.remove()
        Keys.onSpacePressed: root.notification.remove()
        Layout.preferredHeight: root.size
        Layout.preferredWidth: root.size
        activeFocusOnTab: true
        opacity: activeFocus ? 0.6 : 1
        source: "qrc:/icons/close.svg"
        sourceSize: Qt.size(root.size, root.size)
        visible: Boolean(root.notification) && root.notification.closable

        MouseArea {
            anchors.fill: parent
            onClicked: root.notification.remove()
        }
    }

    Loader {
        active: Boolean(root.notification) && root.notification.confirmable
        visible: active
        sourceComponent: ControlButton {
            objectName: "confirm"
            Accessible.name: qsTr("Confirm")
            Material.background: Material.Green
            icon.source: "qrc:/fa/check.svg"
            onClicked: root.notification.confirm()
        }
    }

    Loader {
        active: Boolean(root.notification) && root.notification.timeout > 0
        visible: active
        sourceComponent: ProgressCircle {
            id: countdown

            objectName: "countdown"
            Accessible.name: root.isCancelable ? qsTr("Stop the countdown") : qsTr("Countdown")
            Accessible.role: root.isCancelable ? Accessible.Button : Accessible.ProgressBar
            Accessible.onPressAction: root.stopCountdown()
            Keys.onSpacePressed: root.stopCountdown()
            activeFocusOnTab: root.isCancelable
            opacity: activeFocus ? 0.6 : 1
            width: root.size
            height: root.size
            maxValue: root.notification ? root.notification.timeout : 0

            Timer {
                interval: 10
                repeat: true
                running: countdown.visible
                triggeredOnStart: true
                onTriggered: countdown.currentValue = root.notification.remainingTime()
            }

            MouseArea {
                anchors.fill: parent
                onClicked: root.stopCountdown()
            }
        }
    }

    Loader {
        active: Boolean(root.notification) && root.notification.cancelable
        visible: active
        sourceComponent: ControlButton {
            objectName: "cancel"
            Accessible.name: qsTr("Cancel")
            Material.background: Material.Red
            icon {
                source: "qrc:/fa/times.svg"
                height: root.size
            }
            onClicked: root.notification.cancel()
        }
    }

    component ControlButton: Button {
        implicitWidth: root.size
        implicitHeight: root.size
        padding: 0
        icon {
            // The dark style's shades of green and red are light.
            color: Style.cMainBg
            width: 0.8 * root.size
            height: 0.8 * root.size
        }
    }
}
