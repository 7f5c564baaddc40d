// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0
import "qrc:/qml/js/requests.js" as Requests

LumenboardCase {
    id: root

    readonly property string token: "a\"b/c d"

    function test_secretsStayOutOfTheLog_data() {
        return [
            { tag: "token", response: `<${token}>`, logged: "<********>" },
            { tag: "token in an address", response: `<${encodeURIComponent(token)}>`, logged: "<********>" },
            { tag: "token in JSON", response: `<${JSON.stringify(token)}>`, logged: "<\"********\">" },
            { tag: "password", body: { password: "Größe" }, response: "<Größe>", logged: "******** (7 characters)" },
            { tag: "long", response: "x".repeat(600), logged: "x".repeat(500) },
        ];
    }

    function test_secretsStayOutOfTheLog(data) {
        for (const line of ["Failed to parse reponse: ", "Request error "])
            ignoreWarning(line + data.logged); // fails when the line does not come
        LBAPI.setAccessToken(token);
        const busy = {};
        // The response to such an address is what stands in it; without a status it is an error.
        Requests.request("data:text/plain;charset=utf-8," + encodeURIComponent(data.response), "GET", data.body, fail, result => busy.result = result, busy);
        tryVerify(() => busy.result);
        compare([busy.running, busy.result.data], [false, null]);
    }

    name: "Requests"
}
