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

    Loader {
        active: Boolean(root.notification) && root.notification.confirmable
        visible: active
        sourceComponent: ControlButton {
            objectName: "confirm"
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
                onClicked: {
                    if (!root.notification.timeoutCancelable)
                        return;
                    root.notification.timeout = 0;
                    root.notification.closable = true;
                }
            }
        }
    }

    Loader {
        active: Boolean(root.notification) && root.notification.cancelable
        visible: active
        sourceComponent: ControlButton {
            objectName: "cancel"
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
