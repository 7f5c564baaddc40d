// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import Lumenboard 1.0

import "../components"
import "../elements"
import "../js/requests.js" as Requests

/** Links a card to its owner's account, by a QR code and a phone or by a log-in on this screen. */
Page {
    id: root

    readonly property LBConfig config: LBAPI.config
    readonly property url endpoint: config.quirlUrl.toString().replace(/\/+$/, "") + "/iddb/api/transponder-registration/"

    property alias tid: flow.tid
    property alias transponderStatus: flow.transponderStatus
    property alias registrationReponse: flow.registrationReponse
    property alias requestError: flow.requestError
    property alias useKeyboard: flow.useKeyboard
    /// ms
    property int animationDuration: 500

    /// back to the view below
    signal backWanted
    /// back to the start view
    signal resetWanted

    /** Leaves no request and no password behind, however the view ends. */
    function leave() {
        flow.cancel();
        login.clear();
    }

    Accessible.name: qsTr("Register transponder")
    font.pointSize: 1.5 * config.fontBaseSize
    Component.onCompleted: LBAPI.scanTransponder = true
    Component.onDestruction: leave()
    StackView.onDeactivating: leave()

    RegistrationFlow {
        id: flow

        request: (path, method, body, onLoad, onError) => Requests.request(root.endpoint + path, method, body, onLoad, onError, busy)
        useKeyboard: (root.config.tpRegModeVK && root.config.preferredTpRegMode === LBConfig.TpRegVK) || !root.config.tpRegModeQR
        onLoginFinished: {
            if (hasLoginError)
                login.clearPassword();
            else
                login.clear();
        }
        onRequestErrorChanged: if (requestError)
            login.clearPassword()
    }

    Connections {
        target: LBAPI

        function onTransponderScanned(tid) {
            flow.takeCard(tid);
        }
    }

    header: ViewHeader {
        font.pointSize: 1.5 * root.font.pointSize
        margin: root.font.pixelSize
        title: qsTr("Register transponder")
        onBackWanted: root.backWanted()
    }

    FieldScroller {
        id: area

        anchors.fill: parent
        focusedField: login.focusedField
        // The close button covers the end of a scrolled column.
        roomBelow: 2 * (closeButton.height + root.font.pixelSize)
        spacing: root.font.pixelSize

        SlidingRow {
            id: row

            x: (parent.width - width) / 2
            animationDuration: root.animationDuration
            slides: flow.state !== RegistrationFlow.Scanning // not while the page finds its size
            spacing: 2 * root.font.pixelSize

            ScanIndicator {
                anchors.verticalCenter: parent.verticalCenter
                size: 0.2 * root.width
                pulseDuration: root.animationDuration
                state: {
                    if (flow.state === RegistrationFlow.Scanning)
                        return "scanning";
                    if (flow.state === RegistrationFlow.Owned || flow.state === RegistrationFlow.Registered)
                        return "good";
                    return flow.state === RegistrationFlow.Refused || flow.hasLoginError ? "bad" : "";
                }
            }

            RegistrationMessage {
                anchors.verticalCenter: parent.verticalCenter
                width: 0.35 * root.width
                heading: flow.owner
                text: qsTr("This transponder has already been assigned.")
                visible: flow.state === RegistrationFlow.Owned
            }

            RegistrationQrCode {
                anchors.verticalCenter: parent.verticalCenter
                size: 0.2 * root.width
                source: flow.useKeyboard ? "" : flow.qrCode
                offersKeyboard: root.config.tpRegModeVK
                visible: flow.state === RegistrationFlow.ByPhone
                onKeyboardWanted: flow.useKeyboard = true
                onRetryWanted: flow.refresh()
            }

            RegistrationLogin {
                id: login

                anchors.verticalCenter: parent.verticalCenter
                columnWidth: 0.35 * root.width
                maximumWidth: 0.75 * root.width - 2 * row.spacing
                isBusy: busy.running
                message: flow.hasLoginError ? flow.message : ""
                offersQrCode: root.config.tpRegModeQR
                visible: flow.state === RegistrationFlow.ByLogin
                onQrCodeWanted: {
                    login.clear();
                    flow.useKeyboard = false;
                }
                onSubmitted: flow.register(username, password)
            }

            RegistrationMessage {
                anchors.verticalCenter: parent.verticalCenter
                width: 0.35 * root.width
                heading: flow.name
                text: flow.message
                visible: flow.state === RegistrationFlow.Registered || flow.state === RegistrationFlow.Refused
            }

            RegistrationMessage {
                anchors.verticalCenter: parent.verticalCenter
                width: 0.35 * root.width
                heading: qsTr("Error")
                text: qsTr("The request failed.") + (flow.requestError ? "\n\n" + LBAPI.requestFailure(flow.requestError.status) : "")
                visible: flow.state === RegistrationFlow.Failed

                Button {
                    objectName: "retry"
                    font.capitalization: Font.MixedCase
                    text: qsTr("Try again")
                    onClicked: flow.retry()
                }
            }
        }

        PlainLabel {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, root.width - 2 * root.font.pixelSize)
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("Please scan your transponder.")
            visible: flow.state === RegistrationFlow.Scanning
        }

        BusyIndicator {
            id: busy

            Accessible.name: qsTr("Please wait.")
            anchors.horizontalCenter: parent.horizontalCenter
            running: false
            visible: running
        }
    }

    CloseButton {
        id: closeButton

        anchors {
            right: parent.right
            bottom: parent.bottom
            margins: root.font.pixelSize
        }
        objectName: "close"
        // Where the keyboard leaves too little room, the button would cover the typed text.
        visible: login.focusedField === null || area.fits
        text: qsTr("Close")
        onClicked: root.resetWanted()
    }
}
