// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtGraphicalEffects 1.15
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.impl 2.15
import QtQuick.Controls.Material 2.15
import QtQuick.Window 2.15

import "../common"
import "../elements"

/** One of the extra buttons of a notice. */
Item {
    id: root

    /// the LBNotificationButton
    property QtObject button
    /// the height of the text beside it, px
    readonly property real iconSize: control.font.pointSize * Screen.logicalPixelDensity * 25.4 / 72

    signal pressedWhenEnabled

    implicitWidth: control.implicitWidth
    implicitHeight: control.implicitHeight

    RectangularGlow {
        id: glow

        readonly property bool isPulsing: Boolean(root.button) && root.button.flashing
        /// ms, up and down
        readonly property int period: 1000
        property real start: 0
        property real end: 0

        /** Eases out to 1 in half a period and in to 0 in the other; the last pulse runs to its end. */
        function fade() {
            const now = Date.now();
            const isOver = now >= end && !isPulsing;
            // The clock can be set back meanwhile.
            const phase = ((now - start) % period + period) % period / period;
            opacity = isOver ? 0 : 1 - Math.pow(2 * phase - 1, 2);
            if (!isOver)
                frame.schedule();
        }

        onIsPulsingChanged: {
            const now = Date.now();
            if (isPulsing && opacity === 0)
                start = now;
            end = start + Math.ceil((now - start) / period) * period;
            fade();
        }
        anchors.fill: control
        color: control.Material.accent
        glowRadius: 15
        opacity: 0
        spread: 0.2
        visible: opacity > 0

        FrameTimer {
            id: frame

            onTriggered: glow.fade()
        }
    }

    Button {
        id: control

        Accessible.checkable: true
        Accessible.checked: highlighted
        Accessible.name: label.text
        anchors.fill: parent
        // A disabled but highlighted button shows the person's choice, so keep its full colours.
        enabled: Boolean(root.button) && (root.button.enabled || root.button.highlighted)
        font.pointSize: 3 * Qt.application.font.pointSize
        highlighted: Boolean(root.button) && root.button.highlighted
        icon {
            source: root.button ? root.button.icon : ""
            width: root.iconSize
            height: root.iconSize
        }
        // Button's own content item would interpret markup in the text.
        contentItem: Item {
            implicitWidth: content.width
            implicitHeight: content.height

            Row {
                id: content

                anchors.centerIn: parent
                spacing: control.spacing

                IconImage {
                    anchors.verticalCenter: parent.verticalCenter
                    color: label.color
                    source: control.icon.source
                    sourceSize: Qt.size(control.icon.width, control.icon.height)
                }

                PlainLabel {
                    id: label

                    color: {
                        if (!control.enabled)
                            return control.Material.hintTextColor;
                        return control.highlighted ? Style.cMainBg : control.Material.foreground;
                    }
                    font: control.font
                    text: root.button ? root.button.text : ""
                }
            }
        }
        onClicked: if (root.button.enabled)
            root.pressedWhenEnabled()
    }
}
