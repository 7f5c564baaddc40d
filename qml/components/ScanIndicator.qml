// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtGraphicalEffects 1.15

/** The symbol of a card reader; its state "scanning", "good", "bad" or "" gives the colour. */
Item {
    id: root

    /// edge length, px
    property real size: 100
    /// half a period of the pulse while scanning, ms
    property int pulseDuration: 500
    property color tint: state === "good" ? "#aaffaa" : state === "bad" ? "#ffaaaa" : "#aaaaff"

    width: size
    height: size

    Image {
        id: picture

        anchors.fill: parent
        source: "qrc:/fa/signal-stream.svg"
        sourceSize: Qt.size(root.size, root.size)
        visible: false
    }

    ColorOverlay {
        id: overlay

        anchors.fill: picture
        color: root.tint
        source: picture

        SequentialAnimation on color {
            alwaysRunToEnd: false
            loops: Animation.Infinite
            running: root.state === "scanning" && root.visible
            onStopped: overlay.color = Qt.binding(() => root.tint)

            ColorAnimation {
                from: "white"
                to: "#aaaaff"
                duration: root.pulseDuration
                easing.type: Easing.InOutQuad
            }

            ColorAnimation {
                from: "#aaaaff"
                to: "white"
                duration: root.pulseDuration
                easing.type: Easing.InOutQuad
            }
        }
    }
}
