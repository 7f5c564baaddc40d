// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import Lumenboard 1.0
import "qrc:/qml/js/requests.js" as Requests

LumenboardCase {
    id: root

    readonly property string password: "Größe-42!"
    readonly property string token: "a\"b/c d"
    property Item stack
    property Item page
    property int cards: 0

    function shows(text) {
        return readable(page).some(each => each.includes(text));
    }

    function open(settings) {
        bench.logIn();
        const all = Object.assign({ preferredTpRegMode: 1, tpRegModeQR: true, tpRegModeVK: true }, settings);
        for (const key in all)
            bench.set(key, all[key]);
        stack = find(make("views/Main.qml", { width: width, height: height }), item => item.depth !== undefined);
        page = stack.push("qrc:/qml/views/TransponderRegistration.qml", {}, StackView.Immediate);
        compare(LBAPI.scanTransponder, true);
        verify(shows("Bitte halten Sie Ihren Transponder an das Lesegerät."));
    }

    /** Holds up the given card, or a new one that has no owner. */
    function scan(tid) {
        cards += 1;
        LBAPI.onTransponderScanned(tid || "0B" + ("00000" + cards.toString(16)).slice(-6));
        compare(LBAPI.scanTransponder, false);
    }

    function field(name) {
        return findChild(page, name);
    }

    function logIn(username) {
        tryVerify(() => field("username").visible);
        field("username").text = username;
        field("password").text = password;
        mouseClick(field("register"));
    }

    function test_responses_data() {
        const failed = (route, fault, reason) => ({ tag: route + " " + fault, route: route, fault: fault, username: route === "registration" ? "kim" : "", shown: "Die Anfrage ist fehlgeschlagen.\n\n" + reason });
        const reasons = { "server-error": "Der Dienst ist gestört (Fehler 500).", "captive-portal": "Die Antwort des Dienstes ist unlesbar." };
        return [
            { tag: "card of somebody", tid: "0A1B2C3D", shown: "Erika Beispiel" },
            { tag: "right password", username: "kim", shown: "zugeordnet" },
            { tag: "wrong password", username: "mia", shown: "Benutzername oder Passwort ist falsch.", isForm: true },
            { tag: "locked", username: "robin", shown: "gesperrt" },
            failed("registration-status", "wrong-credentials", "Der Dienst lässt dieses Gerät nicht zu (Fehler 401)."),
            ...["server-error", "hang", "drip", "drop", "captive-portal", "redirect-away", "oversize"].map(fault => failed("registration", fault, reasons[fault] || "")),
        ];
    }

    function test_responses(data) {
        open();
        if (data.fault)
            bench.spoil(data.route, data.fault);
        scan(data.tid);
        if (data.username)
            logIn(data.username);
        tryVerify(() => shows(data.shown));
        compare([field("username").visible, field("password").text, bench.strayRequests()], [data.isForm === true, "", 0]);
        if (data.fault) {
            bench.spoil(data.route, "none");
            mouseClick(field("retry"));
            logIn("kim");
            tryVerify(() => shows("zugeordnet"));
        } else {
            compare(field("username").text, data.isForm ? data.username : "");
        }
    }

    function test_modes_data() {
        return [
            { tag: "keyboard", settings: {}, isKeyboard: true, others: ["useQrCode"] },
            { tag: "QR code", settings: { preferredTpRegMode: 0 }, isKeyboard: false, others: ["useKeyboard"] },
            { tag: "keyboard alone", settings: { preferredTpRegMode: 0, tpRegModeQR: false }, isKeyboard: true, others: [] },
            { tag: "QR code alone", settings: { tpRegModeVK: false }, isKeyboard: false, others: [] },
        ];
    }

    function test_modes(data) {
        const isCode = item => /qr.*svg$/.test(item.source || "") && item.status === Image.Ready && item.visible;
        open(data.settings);
        scan();
        tryVerify(() => data.isKeyboard ? field("username").visible : find(page, isCode));
        compare([shows("Bitte scannen Sie den QR-Code"), field("username").visible], [!data.isKeyboard, data.isKeyboard]);
        compare(["useKeyboard", "useQrCode"].filter(name => field(name).visible), data.others);
        for (const each of data.others) {
            mouseClick(field(each));
            tryCompare(field("username"), "visible", !data.isKeyboard);
        }
    }

    function test_brokenQrCode_data() {
        const codes = { "missing": undefined, "relative": "/q.png", "of another host": "http://other.example/q.png", "not there": "SERVICE/q.png", "no image": "data:image/png,x" };
        return Object.keys(codes).map(tag => ({ tag: tag, code: codes[tag] }));
    }

    function test_brokenQrCode(data) {
        const broken = "Der QR-Code kann nicht angezeigt werden.";
        open({ preferredTpRegMode: 0 });
        scan();
        tryVerify(() => page.transponderStatus);
        page.transponderStatus = { owned: false, qrCode: data.code && data.code.replace("SERVICE", LBAPI.config.quirlUrl) };
        tryVerify(() => shows(broken));
        mouseClick(field("useKeyboard"));
        tryVerify(() => field("username").visible);
        mouseClick(field("useQrCode"));
        tryVerify(() => shows(broken));
        mouseClick(field("reload"));
        tryVerify(() => shows("Bitte scannen Sie den QR-Code"));
        bench.takeWarnings(); // of the images
    }

    function test_rowSlidesWhenItsItemsChange() {
        open();
        const row = find(page, item => item.slides !== undefined);
        waitForRendering(page);
        const centred = () => Math.abs(row.x - (page.width - row.width) / 2) < 1;
        verify(centred());
        const start = row.x;
        const passed = [];
        row.xChanged.connect(() => passed.push(row.x));
        scan("0A1B2C3D");
        tryVerify(() => row.x < start && centred());
        verify(passed.some(x => x < start - 5 && x > row.x + 5), passed);
    }

    function test_leavesNothingBehind_data() {
        return [{ tag: "back", leave: () => mouseClick(field("back")) }, { tag: "close", leave: () => mouseClick(field("close")) }, { tag: "inactivity", leave: () => LBAPI.emitReset() }];
    }

    function test_leavesNothingBehind(data) {
        open();
        bench.spoil("registration-status", "hang");
        const before = bench.requests("registration-status");
        scan();
        tryVerify(() => bench.requests("registration-status") === before + 1);
        LBAPI.scanTransponder = true;
        const typed = field("password");
        typed.text = password;
        data.leave();
        compare([LBAPI.scanTransponder, typed.text], [false, ""]);
        tryCompare(stack, "depth", 1);
    }

    function test_secretsStayOutOfTheLog_data() {
        return [
            { tag: "token", response: `<${token}>`, logged: "<********>" },
            { tag: "token in an address", response: `<${encodeURIComponent(token)}>`, logged: "<********>" },
            { tag: "token in JSON", response: `<${JSON.stringify(token)}>`, logged: "<\"********\">" },
            { tag: "password", body: { password: password }, response: `<${password}>`, logged: "******** (11 characters)" },
            { tag: "long", response: "x".repeat(600), logged: "x".repeat(500) },
        ];
    }

    function test_secretsStayOutOfTheLog(data) {
        for (const line of ["Failed to parse reponse: ", "Request error "])
            ignoreWarning(line + data.logged); // fails if the line is not logged
        LBAPI.setAccessToken(token);
        const busy = {};
        // A data URL responds with its own content. It has no status, which counts as an error.
        Requests.request("data:text/plain;charset=utf-8," + encodeURIComponent(data.response), "GET", data.body, fail, result => busy.result = result, busy);
        tryVerify(() => busy.result);
        compare([busy.running, busy.result.data], [false, null]);
    }

    name: "Registration"
}
