// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import "qrc:/qml/components"

LumenboardCase {
    id: root

    property QtObject flow
    property var requests
    property int cancelled

    function open(properties) {
        requests = [];
        cancelled = 0;
        const request = (...all) => {
            requests.push(all);
            return { cancel: () => cancelled += 1 };
        };
        flow = make("components/RegistrationFlow.qml", Object.assign({ request: request }, properties));
    }

    /** Responds to the last request; undefined makes it fail. */
    function respond(data) {
        const [onLoad, onError] = requests[requests.length - 1].slice(3);
        (data === undefined ? onError : onLoad)({ data: data });
    }

    function test_states_data() {
        const codes = ["https://x.example/q.png", "data:image/svg+xml," + " ".repeat(5000)];
        const status = (data, state, properties, code) => ({ code: code, tag: "status " + String(JSON.stringify(data)).slice(0, 50), responses: [data], state: state, properties: properties });
        const login = (data, state) => ({ tag: "log-in " + JSON.stringify(data), responses: [{ owned: false }, data], state: state, properties: { useKeyboard: true } });
        return [
            status({ owned: true }, "Owned"),
            status({ owned: false }, "ByLogin", { useKeyboard: true }),
            ...codes.map(each => status({ owned: false, qrCode: each }, "ByPhone", {}, each)),
            ...["file:///etc/passwd", "qrc:/icons/info.svg", "javascript:1", "/q.png", 5, null, undefined].map(each => status({ owned: false, qrCode: each }, "ByPhone", {}, "")),
            ...[undefined, null, 5, [{ owned: false }], {}, { owned: 1 }].map(each => status(each, "Failed")),
            login({ error: null }, "Registered"),
            login({ error: "login" }, "ByLogin"),
            login({ error: "locked" }, "Refused"),
            ...[undefined, null, {}].map(each => login(each, "Failed")),
        ];
    }

    function test_states(data) {
        open(data.properties);
        compare(flow.state, RegistrationFlow.Scanning);
        flow.takeCard("0A1B2C3D");
        compare(flow.state, RegistrationFlow.Checking);
        for (const response of data.responses) {
            if (flow.state === RegistrationFlow.ByLogin)
                flow.register("kim", "x");
            respond(response);
        }
        compare(flow.state, RegistrationFlow[data.state]);
        if (data.code !== undefined)
            compare(flow.qrCode, data.code);
        if (data.state === "Failed") {
            flow.retry();
            compare([flow.state, requests.length], [data.responses.length === 1 ? RegistrationFlow.Checking : RegistrationFlow.ByLogin, 2]);
        }
    }

    function test_requests() {
        open();
        flow.takeCard("0A/2");
        flow.takeCard("0B");
        flow.register("kim", "x");
        compare(requests.map(each => each.slice(0, 3)), [["0A%2F2/", "GET", null], ["", "POST", { username: "kim", password: "x", tid: "0A/2" }]]);
        respond({ error: "login", message: {}, name: "x".repeat(2000) });
        flow.cancel();
        compare([cancelled, flow.message, flow.name.length], [1, "", 1000]);
    }

    name: "RegistrationFlow"
}
