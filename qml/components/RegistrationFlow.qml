// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** The registration of one card: its requests and its state, without visuals. */
QtObject {
    id: root

    enum State {
        Scanning, // waits for a card
        Checking, // queries the card's status
        Owned,
        ByPhone, // the card is free: a QR code leads to the log-in, if it can be shown
        ByLogin, // the card is free: the log-in takes place on this screen
        Registered,
        Refused, // for good, unlike a wrong password
        Failed // until retry()
    }

    /**
     * Sends a request: function(path, method, body, onLoad, onError). The path is relative to the
     * service's address; handlers and result are those of request() in requests.js.
     */
    property var request
    /// prefers ByLogin to ByPhone
    property bool useKeyboard: false

    /// the card as the reader sent it; empty while scanning
    property string tid
    /// the response to the status query, or null
    property var transponderStatus: null
    /// the response to the last log-in, or null
    property var registrationReponse: null
    /// the result of a failed request, or null
    property var requestError: null
    /// the request under way, or null
    property var pending: null

    readonly property int state: {
        if (requestError !== null)
            return RegistrationFlow.Failed;
        if (loginError !== undefined && !hasLoginError)
            return loginError === null ? RegistrationFlow.Registered : RegistrationFlow.Refused;
        if (tid === "")
            return RegistrationFlow.Scanning;
        if (transponderStatus === null || typeof transponderStatus.owned !== "boolean")
            return RegistrationFlow.Checking;
        if (transponderStatus.owned)
            return RegistrationFlow.Owned;
        return useKeyboard ? RegistrationFlow.ByLogin : RegistrationFlow.ByPhone;
    }
    /// null after success, undefined before a response
    readonly property var loginError: registrationReponse !== null ? registrationReponse.error : undefined
    /// user name or password are wrong
    readonly property bool hasLoginError: loginError === "login"
    /// address of the QR code; empty if the service gives none that may be shown
    readonly property string qrCode: transponderStatus !== null && transponderStatus.owned === false ? imageAddress(transponderStatus.qrCode) : ""
    readonly property string owner: transponderStatus !== null ? text(transponderStatus.owner) : ""
    /// the person that the response is about
    readonly property string name: loginError !== undefined ? text(registrationReponse.name) : ""
    readonly property string message: loginError !== undefined ? text(registrationReponse.message) : ""

    /// the response to a log-in has arrived, whatever its content
    signal loginFinished

    /** @p value, cut to what fits on a screen; empty if it is not a text. */
    function text(value): string {
        return typeof value === "string" ? value.slice(0, 1000) : "";
    }

    /** @p value if it is a web address or a data URL; a service must not name local files. */
    function imageAddress(value): string {
        return typeof value === "string" && value.length < 1000000 && /^(https?:|data:image\/)/i.test(value) ? value : "";
    }

    /** The JSON object of a response; any other content counts as a failed request. */
    function objectOf(result) {
        if (result.data !== null && typeof result.data === "object")
            return result.data;
        requestError = result;
        return null;
    }

    function send(path, method, body, onObject) {
        cancel();
        requestError = null;
        pending = request(path, method, body, result => {
            pending = null; // or it would keep the password
            onObject(objectOf(result), result);
        }, result => {
            pending = null;
            requestError = result;
        });
    }

    function cancel() {
        if (pending)
            pending.cancel();
        pending = null;
    }

    /** Queries the status of a card that was read. Ignores every card after the first. */
    function takeCard(card: string) {
        if (tid !== "")
            return;
        tid = card;
        fetchStatus();
    }

    function fetchStatus() {
        send(encodeURIComponent(tid) + "/", "GET", null, (status, result) => {
            transponderStatus = status;
            if (status && typeof status.owned !== "boolean")
                requestError = result;
            if (state === RegistrationFlow.ByPhone && qrCode === "")
                console.warn("The registration service sent no QR code that can be shown.");
        });
    }

    /** Queries the card's status again. */
    function refresh() {
        transponderStatus = null;
        fetchStatus();
    }

    function register(username: string, password: string) {
        registrationReponse = null;
        send("", "POST", {
            "username": username,
            "password": password,
            "tid": tid
        }, (response, result) => {
            registrationReponse = response;
            loginFinished();
            if (response && response.error === undefined)
                requestError = result;
        });
    }

    /** Returns to the log-in after its request failed; otherwise queries the card's status again. */
    function retry() {
        requestError = null;
        if (state === RegistrationFlow.Checking)
            refresh();
    }
}
