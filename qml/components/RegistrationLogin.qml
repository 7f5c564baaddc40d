// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15

import "../common"
import "../elements"

/** The log-in on this screen: user name and password, typed on the on-screen keyboard. */
Grid {
    id: root

    /// px
    property real columnWidth: 300
    /// maximum width for columns side by side; wider ones are stacked, px
    property real maximumWidth: 600
    /// a request is under way
    property bool isBusy: false
    /// the response to the last attempt; empty before the first
    property string message
    /// the person can use a phone instead
    property bool offersQrCode: true
    /// the field with the focus, or null
    readonly property Item focusedField: username.activeFocus ? username : password.activeFocus ? password : null

    signal submitted(string username, string password)
    signal qrCodeWanted

    function clear() {
        username.text = ""; // unlike clear(), this leaves nothing to undo
        password.text = "";
    }

    /** Prepares another attempt. */
    function clearPassword() {
        password.text = "";
        if (visible)
            password.forceActiveFocus();
    }

    columns: 1.7 * columnWidth + spacing <= maximumWidth ? 2 : 1
    spacing: 2 * heading.font.pixelSize
    onVisibleChanged: if (visible)
        username.forceActiveFocus()

    Column {
        width: root.columnWidth
        spacing: 8

        PlainLabel {
            id: heading

            text: qsTr("Login")
        }

        LoginField {
            id: username

            objectName: "username"
            placeholderText: qsTr("Username")
            onAccepted: password.forceActiveFocus()
        }

        LoginField {
            id: password

            objectName: "password"
            echoMode: TextInput.Password
            passwordMaskDelay: 0
            placeholderText: qsTr("Password")
            onAccepted: registerButton.submit()
        }

        PlainLabel {
            width: parent.width
            text: root.message === "" ? qsTr("Please login with your DeskHub account.") : root.message

            Announcement {
                anchors.fill: parent
                text: root.message
            }
        }

        Button {
            id: registerButton

            function submit() {
                if (enabled)
                    root.submitted(username.text, password.text);
            }

            objectName: "register"
            font.capitalization: Font.MixedCase
            enabled: username.text !== "" && password.text !== "" && !root.isBusy
            highlighted: true
            text: qsTr("Register")
            // The style's white is hard to read on its accent colour.
            contentItem: PlainLabel {
                color: registerButton.enabled ? Style.cMainBg : registerButton.Material.hintTextColor
                font: registerButton.font
                horizontalAlignment: Text.AlignHCenter
                text: registerButton.text
                verticalAlignment: Text.AlignVCenter
            }
            onClicked: submit()
        }
    }

    Column {
        width: 0.7 * root.columnWidth
        spacing: 16
        visible: root.offersQrCode

        PlainLabel {
            width: parent.width
            text: qsTr("Alternatively, you can push the button below to scan a QR code and login online.")
        }

        Button {
            objectName: "useQrCode"
            Accessible.name: qsTr("Log in with a QR code")
            enabled: !root.isBusy
            font {
                family: "Font Awesome"
                pointSize: 2 * heading.font.pointSize
                weight: Font.Black
            }
            text: "\uf029"
            onClicked: root.qrCodeWanted()
        }
    }

    component LoginField: TextField {
        Accessible.name: placeholderText
        width: parent.width
        inputMethodHints: Qt.ImhSensitiveData | Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
        placeholderTextColor: Style.cPlaceholder
        selectByMouse: true
        selectedTextColor: Style.cMainBg
    }
}
