// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15

import "../elements"

/** The way to register by phone: a QR code that leads to the log-in. */
Column {
    id: root

    /// edge length of the code, px
    property real size: 200
    /// address of the code's image
    property url source
    /// whether the person can log in at the screen instead
    property bool offersKeyboard: true
    /// the image can not be had
    readonly property bool hasFailed: image.status === Image.Error

    signal keyboardWanted

    width: 2 * size
    spacing: 16

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: root.size
        height: root.size
        color: "white"

        Image {
            id: image

            anchors {
                fill: parent
                margins: 4
            }
            fillMode: Image.PreserveAspectFit
            source: root.source
            // Whatever the service sends: no more is decoded than can be seen.
            sourceSize: Qt.size(width, height)
        }
    }

    PlainLabel {
        id: hint

        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Please scan the QR code and visit the contained web address.")
    }

    PlainLabel {
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Alternatively, you can push the button below to login using an on-screen keyboard.")
        visible: root.offersKeyboard
    }

    Button {
        anchors.horizontalCenter: parent.horizontalCenter
        objectName: "useKeyboard"
        font {
            family: "Font Awesome"
            pointSize: 2 * hint.font.pointSize
            weight: Font.Black
        }
        text: "\uf11c"
        visible: root.offersKeyboard
        onClicked: root.keyboardWanted()
    }
}
