// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import Lumenboard 1.0

LumenboardCase {
    id: root

    readonly property string password: "Größe-42!"
    property Item view
    property Item stack
    property Item page
    property int cards: 0

    function shows(text) {
        return readable(page).some(each => each.includes(text));
    }

    function open(settings) {
        for (const key in settings || {})
            bench.set(key, settings[key]);
        view = make("views/Main.qml", { width: width, height: height });
        stack = find(view, item => item.depth !== undefined);
        page = stack.push("qrc:/qml/views/TransponderRegistration.qml", {}, StackView.Immediate);
        compare(LBAPI.scanTransponder, true);
        verify(shows("Bitte halten Sie Ihren Transponder an das Lesegerät."));
    }

    /** A card that nobody has yet, unless one is given. */
    function scan(tid) {
        cards += 1;
        LBAPI.onTransponderScanned(tid || "0B" + ("00000" + cards.toString(16)).slice(-6));
        compare(LBAPI.scanTransponder, false);
    }

    function field(name) {
        return findChild(page, name);
    }

    function logIn(username, password) {
        tryVerify(() => field("username").visible);
        field("username").text = username;
        field("password").text = password;
        mouseClick(findChild(page, "register"));
    }

    function init() {
        bench.logIn();
        bench.set("preferredTpRegMode", 1);
        bench.set("tpRegModeQR", true);
        bench.set("tpRegModeVK", true);
    }

    function test_answers_data() {
        return [
            { tag: "right password", username: "kim", password: password, shown: "zugeordnet", isCleared: true },
            { tag: "wrong password", username: "kim", password: "x", shown: "Benutzername oder Passwort ist falsch.", isForm: true },
            { tag: "locked", username: "robin", password: password, shown: "gesperrt", isCleared: true },
        ];
    }

    function test_answers(data) {
        open();
        scan();
        logIn(data.username, data.password);
        tryVerify(() => shows(data.shown));
        compare(field("username").visible, data.isForm === true);
        compare(field("password").text, "");
        compare(field("username").text, data.isForm ? data.username : "");
    }

    function test_cardOfSomebody() {
        open();
        scan("0A1B2C3D");
        tryVerify(() => shows("Erika Beispiel") && shows("Dieser Transponder ist bereits zugeordnet."));
        compare(field("username").visible, false);
    }

    function test_modes_data() {
        return [
            { tag: "keyboard", settings: {}, isKeyboard: true, other: "useQrCode" },
            { tag: "QR code", settings: { preferredTpRegMode: 0 }, isKeyboard: false, other: "useKeyboard" },
            { tag: "keyboard alone", settings: { preferredTpRegMode: 0, tpRegModeQR: false }, isKeyboard: true },
            { tag: "QR code alone", settings: { tpRegModeVK: false }, isKeyboard: false },
        ];
    }

    function test_modes(data) {
        open(data.settings);
        scan();
        tryVerify(() => field("username").visible || shows("Bitte scannen Sie den QR-Code"));
        compare(field("username").visible, data.isKeyboard);
        if (!data.isKeyboard)
            tryVerify(() => find(page, item => /svg$/.test(item.source || "") && /qr/.test(item.source) && item.status === Image.Ready));
        const others = ["useKeyboard", "useQrCode"].filter(name => findChild(page, name).visible);
        compare(others, data.other ? [data.other] : []);
        if (!data.other)
            return;
        mouseClick(findChild(page, data.other));
        tryCompare(field("username"), "visible", !data.isKeyboard);
    }

    function test_failures_data() {
        const faults = ["server-error", "hang", "drip", "drop", "captive-portal", "redirect-away", "wrong-root", "oversize", "invalid-value"];
        return [].concat(...["registration-status", "registration"].map(route => faults.map(fault => ({ tag: route + " " + fault, route: route, fault: fault }))));
    }

    function test_failures(data) {
        bench.spoil(data.route, data.fault);
        open();
        scan();
        if (data.route === "registration")
            logIn("kim", password);
        tryVerify(() => data.fault === "invalid-value" ? !findChild(page, "register").visible || shows("Fehler") : shows("Die Anfrage ist fehlgeschlagen."));
        compare([field("password").text, bench.strayRequests()], ["", 0]);
        bench.spoil(data.route, "none");
        if (!shows("Die Anfrage ist fehlgeschlagen."))
            return;
        mouseClick(findChild(page, "retry"));
        logIn("kim", password);
        tryVerify(() => shows("zugeordnet"));
    }

    function test_whoeverLeavesLeavesNothing_data() {
        return [{ tag: "back", leave: () => mouseClick(findChild(page, "back")) }, { tag: "close", leave: () => mouseClick(findChild(page, "close")) }, { tag: "inactivity", leave: () => LBAPI.emitReset() }];
    }

    function test_whoeverLeavesLeavesNothing(data) {
        bench.spoil("registration-status", "hang");
        open();
        const before = bench.requests("registration-status");
        scan();
        tryVerify(() => bench.requests("registration-status") === before + 1);
        LBAPI.scanTransponder = true;
        field("password").text = password;
        data.leave();
        compare(LBAPI.scanTransponder, false);
        bench.spoil("registration-status", "none");
        tryCompare(stack, "depth", 1);
        tryVerify(() => !field("password") || field("password").text === "");
    }

    function test_theCodeComesFromTheNetOrTheAnswer() {
        open({ preferredTpRegMode: 0 });
        const image = "data:image/svg+xml,<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>" + " ".repeat(5000) + "</svg>";
        const addresses = [["https://x.example/q.png", true], [image, true], ["file:///etc/passwd", false], ["qrc:/icons/info.svg", false], ["javascript:1", false], [5, false], [undefined, false]];
        compare(addresses.map(each => page.imageAddress(each[0]) !== ""), addresses.map(each => each[1]));
        page.tid = "0A0A0A0A";
        page.transponderStatus = { owned: false, qrCode: "file:///etc/passwd" };
        verify(shows("Die Anfrage ist fehlgeschlagen."));
        mouseClick(findChild(page, "retry"));
        tryVerify(() => shows("Bitte scannen Sie den QR-Code"));
    }

    function test_theDrawerLeadsHere() {
        view = make("views/Main.qml", { width: width, height: height });
        stack = find(view, item => item.depth !== undefined);
        mouseClick(findChild(view, "menuButton"));
        const menu = find(view, item => item.item instanceof Drawer && item.item.edge === Qt.LeftEdge).item;
        tryCompare(menu, "opened", true);
        mouseClick(findChild(menu.contentItem, "registerTransponder"));
        tryCompare(stack, "depth", 2);
        compare(LBAPI.scanTransponder, true);
        LBAPI.emitReset();
    }

    name: "Registration"
}
