// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import Lumenboard 1.0

import "../elements"

/** A close button with a countdown to the moment when inactivity closes the view. */
Button {
    id: root

    font.capitalization: Font.MixedCase
    rightPadding: padding + circle.width + spacing
    spacing: 8

    ProgressCircle {
        id: circle

        anchors {
            right: parent.right
            rightMargin: root.padding
            verticalCenter: parent.verticalCenter
        }
        width: 1.5 * root.font.pixelSize
        height: width
        maxValue: LBAPI.config.inactivityTimeout

        Timer {
            interval: 100
            repeat: true
            running: root.visible
            triggeredOnStart: true
            onTriggered: circle.currentValue = Math.round(LBAPI.inactivityTimerRemaining() / 1000)
        }
    }
}
