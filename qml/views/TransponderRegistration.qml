// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.Material 2.15
import Lumenboard 1.0

import "../components"
import "../elements"
import "../js/requests.js" as Requests

/** Links a card to its owner's account: by a QR code and a phone, or by a log-in at the screen. */
Page {
    id: page

    readonly property LBConfig config: LBAPI.config
    readonly property url endpoint: config.quirlUrl.toString().replace(/\/+$/, "") + "/iddb/api/transponder-registration/"

    /// the card as the reader sent it; empty while one is waited for
    property string tid
    /// what the service knows of the card, or null
    property var transponderStatus: null
    /// what the service says of a log-in, or null
    property var registrationReponse: null
    /// a request that failed, or null
    property var requestError: null
    /// ms
    property int animationDuration: 500
    property bool useKeyboard: (config.tpRegModeVK && config.preferredTpRegMode === LBConfig.TpRegVK) || !config.tpRegModeQR

    readonly property bool isScanning: tid === ""
    readonly property bool isOwned: transponderStatus !== null && transponderStatus.owned === true
    readonly property bool isFree: transponderStatus !== null && transponderStatus.owned === false
    readonly property bool isLoginError: registrationReponse !== null && registrationReponse.error === "login"
    readonly property bool isAnswered: registrationReponse !== null && registrationReponse.error !== undefined && !isLoginError
    readonly property bool isRegistered: isAnswered && registrationReponse.error === null
    /// where the QR code is; empty if the service gives none that may be shown
    readonly property string qrCode: isFree ? imageAddress(transponderStatus.qrCode) : ""
    /// a QR code is wanted that can not be shown
    readonly property bool lacksQrCode: isFree && !useKeyboard && !isAnswered && (qrCode === "" || qrView.hasFailed)
    readonly property bool isFailed: requestError !== null || lacksQrCode
    property var pending: null

    /** @p value if it is a text, as far as a screen can show it. */
    function text(value): string {
        return typeof value === "string" ? value.slice(0, 1000) : "";
    }

    /** Only from the net, or in the answer itself: the screen's own files are nobody's business. */
    function imageAddress(value): string {
        return typeof value === "string" && value.length < 1000000 && /^(https?:|data:image\/)/i.test(value) ? value : "";
    }

    /** An answer that is no object says as little as none. */
    function objectOf(result) {
        const data = result.data;
        if (data !== null && typeof data === "object" && !Array.isArray(data))
            return data;
        requestError = result;
        return null;
    }

    function send(path, method, body, onAnswer) {
        cancel();
        requestError = null;
        pending = Requests.request(endpoint + path, method, body, result => {
            pending = null; // it would keep the password
            onAnswer(objectOf(result), result);
        }, result => {
            pending = null;
            requestError = result;
        }, busy);
    }

    function cancel() {
        if (pending)
            pending.cancel();
        pending = null;
    }

    function scan() {
        cancel();
        login.clear();
        tid = "";
        transponderStatus = null;
        registrationReponse = null;
        requestError = null;
        LBAPI.scanTransponder = true;
    }

    function fetchStatus() {
        send(encodeURIComponent(tid) + "/", "GET", null, (answer, result) => {
            transponderStatus = answer;
            if (answer && typeof answer.owned !== "boolean")
                requestError = result;
        });
    }

    function register(username, password) {
        registrationReponse = null;
        send("", "POST", {
            "username": username,
            "password": password,
            "tid": tid
        }, (answer, result) => {
            registrationReponse = answer;
            if (isLoginError)
                login.clearPassword();
            else
                login.clear();
            if (answer && answer.error === undefined)
                requestError = result;
        });
    }

    /** From where it makes sense: the log-in, the card that was read, or the next card. */
    function retry() {
        requestError = null;
        if (isFree && !lacksQrCode)
            return;
        transponderStatus = null;
        if (isScanning)
            scan();
        else
            fetchStatus();
    }

    /** Whoever leaves, in whichever way, leaves nothing behind. */
    function leave() {
        cancel();
        login.clear();
    }

    font.pointSize: 1.5 * config.fontBaseSize
    onRequestErrorChanged: if (requestError)
        login.clearPassword()
    Component.onCompleted: LBAPI.scanTransponder = true
    Component.onDestruction: leave()
    StackView.onDeactivating: leave()

    Connections {
        target: LBAPI

        function onTransponderScanned(tid) {
            if (!page.isScanning)
                return;
            page.tid = tid;
            page.fetchStatus();
        }
    }

    header: ToolBar {
        Material.foreground: "white"
        font.pointSize: 1.5 * page.font.pointSize

        Row {
            ToolButton {
                id: backButton

                objectName: "back"
                font {
                    family: "Font Awesome"
                    pointSize: 1.5 * page.font.pointSize
                    weight: Font.Black
                }
                text: "\uf137"
                onClicked: root.pop()
            }

            Label {
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, page.width - backButton.width - page.font.pixelSize)
                font.pointSize: 1.5 * page.font.pointSize
                fontSizeMode: Text.HorizontalFit
                minimumPointSize: page.config.fontBaseSize
                text: qsTr("Register transponder")
                textFormat: Text.PlainText
            }
        }
    }

    Flickable {
        id: area

        /** Keeps the field that is typed into above the keyboard. */
        function showField() {
            const field = login.focusedField;
            if (!field) {
                contentY = 0;
                return;
            }
            const top = field.mapToItem(contentItem, 0, 0).y;
            contentY = Math.max(0, Math.min(top - (height - field.height) / 2, contentHeight - height));
        }

        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        // What has to be scrolled gets room below for the button that lies over it.
        contentHeight: block.height <= height ? height : block.height + 2 * (closeButton.height + page.font.pixelSize)
        onHeightChanged: showField()

        Column {
            id: block

            anchors.centerIn: parent
            spacing: page.font.pixelSize

            Row {
                id: row

                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 2 * page.font.pixelSize

                Behavior on x {
                    NumberAnimation {
                        duration: page.animationDuration
                    }
                }
                add: Transition {
                    NumberAnimation {
                        property: "opacity"
                        from: 0
                        to: 1
                        duration: page.animationDuration
                    }
                }

                ScanIndicator {
                    anchors.verticalCenter: parent.verticalCenter
                    size: 0.2 * page.width
                    pulseDuration: page.animationDuration
                    state: page.isScanning ? "scanning" : page.isOwned || page.isRegistered ? "good" : page.isAnswered || page.isLoginError ? "bad" : ""
                }

                Column {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 0.35 * page.width
                    spacing: page.font.pixelSize
                    visible: page.isOwned && !page.isFailed

                    AccentLabel {
                        width: parent.width
                        font.pointSize: 2 * page.font.pointSize
                        text: page.isOwned ? page.text(page.transponderStatus.owner) : ""
                    }

                    PlainLabel {
                        width: parent.width
                        text: qsTr("This transponder has already been assigned.")
                    }
                }

                RegistrationQrCode {
                    id: qrView

                    anchors.verticalCenter: parent.verticalCenter
                    size: 0.2 * page.width
                    source: page.useKeyboard ? "" : page.qrCode
                    offersKeyboard: page.config.tpRegModeVK
                    visible: page.isFree && !page.useKeyboard && !page.isAnswered && !page.isFailed
                    onKeyboardWanted: page.useKeyboard = true
                }

                RegistrationLogin {
                    id: login

                    anchors.verticalCenter: parent.verticalCenter
                    columnWidth: 0.35 * page.width
                    maximumWidth: 0.75 * page.width - 2 * row.spacing
                    isBusy: busy.running
                    message: page.isLoginError ? page.text(page.registrationReponse.message) : ""
                    offersQrCode: page.config.tpRegModeQR
                    visible: page.isFree && page.useKeyboard && !page.isAnswered && !page.isFailed
                    onFocusedFieldChanged: area.showField()
                    onQrCodeWanted: {
                        login.clear();
                        page.useKeyboard = false;
                    }
                    onSubmitted: page.register(username, password)
                }

                Column {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 0.35 * page.width
                    spacing: page.font.pixelSize
                    visible: page.isAnswered && !page.isFailed

                    AccentLabel {
                        width: parent.width
                        font.pointSize: 2 * page.font.pointSize
                        text: page.isAnswered ? page.text(page.registrationReponse.name) : ""
                        visible: text !== ""
                    }

                    PlainLabel {
                        width: parent.width
                        text: page.isAnswered ? page.text(page.registrationReponse.message) : ""
                    }
                }

                Column {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 0.35 * page.width
                    spacing: page.font.pixelSize
                    visible: page.isFailed

                    AccentLabel {
                        width: parent.width
                        font.pointSize: 2 * page.font.pointSize
                        text: qsTr("Error")
                    }

                    PlainLabel {
                        width: parent.width
                        text: qsTr("The request failed.")
                    }

                    Button {
                        objectName: "retry"
                        font.capitalization: Font.MixedCase
                        text: qsTr("Try again")
                        onClicked: page.retry()
                    }
                }
            }

            PlainLabel {
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.min(implicitWidth, page.width - 2 * page.font.pixelSize)
                horizontalAlignment: Text.AlignHCenter
                text: qsTr("Please scan your transponder.")
                visible: page.isScanning
            }

            BusyIndicator {
                id: busy

                anchors.horizontalCenter: parent.horizontalCenter
                running: false
                visible: running
            }
        }
    }

    Button {
        id: closeButton

        anchors {
            right: parent.right
            bottom: parent.bottom
            margins: page.font.pixelSize
        }
        objectName: "close"
        // Where the keyboard leaves too little room it would lie over what is typed.
        visible: login.focusedField === null || block.height <= area.height
        font.capitalization: Font.MixedCase
        rightPadding: padding + circle.width + spacing
        spacing: 8
        text: qsTr("Close")
        onClicked: root.reset()

        ProgressCircle {
            id: circle

            anchors {
                right: parent.right
                rightMargin: closeButton.padding
                verticalCenter: parent.verticalCenter
            }
            width: 1.5 * closeButton.font.pixelSize
            height: width
            maxValue: page.config.inactivityTimeout

            Timer {
                interval: 100
                repeat: true
                running: page.visible
                triggeredOnStart: true
                onTriggered: circle.currentValue = Math.round(LBAPI.inactivityTimerRemaining() / 1000)
            }
        }
    }

    component PlainLabel: Label {
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }

    component AccentLabel: PlainLabel {
        color: Material.accent
    }
}
