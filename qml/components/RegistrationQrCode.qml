// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15

import "../elements"

/** The log-in on a phone: a QR code with its address. */
Column {
    id: root

    /// edge length of the code, px
    property real size: 200
    /// address of the code's image
    property url source
    /// the person can log in on this screen instead
    property bool offersKeyboard: true
    /// there is no image, or it could not be loaded
    readonly property bool isBroken: source.toString() === "" || image.status === Image.Error

    signal keyboardWanted
    signal retryWanted

    width: 2 * size
    spacing: 16

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: root.size
        height: root.size
        color: root.isBroken ? "transparent" : "white"

        Image {
            id: image

            Accessible.name: qsTr("QR code")
            Accessible.role: Accessible.Graphic
            anchors {
                fill: parent
                margins: 4
            }
            fillMode: Image.PreserveAspectFit
            source: root.source
            // Decode no more than is visible, however large the image is.
            sourceSize: Qt.size(width, height)
        }

        // In place of the image, so that the buttons below stay where they are.
        Button {
            anchors.centerIn: parent
            objectName: "reload"
            font.capitalization: Font.MixedCase
            text: qsTr("Try again")
            visible: root.isBroken
            onClicked: root.retryWanted()
        }
    }

    PlainLabel {
        id: hint

        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: root.isBroken ? qsTr("The QR code cannot be shown.") : qsTr("Please scan the QR code and visit the contained web address.")
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
        Accessible.name: qsTr("Log in on the on-screen keyboard")
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
