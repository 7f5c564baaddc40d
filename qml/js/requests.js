// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

.import Lumenboard 1.0 as Lumenboard

/**
 * @p text for the log: without the token, and no longer than a line should be. What answers a password
 * is not shown at all: an echo of it may be spelt in more ways than could be looked for.
 */
function masked(text, token, hasPassword) {
    if (hasPassword)
        return "******** (" + text.length + " characters)";
    const spellings = [token, encodeURIComponent(token), JSON.stringify(token).slice(1, -1)];
    return spellings.filter(each => each).reduce((rest, each) => rest.split(each).join("********"), text).slice(0, 500);
}

/**
 * Asks a service with the current access token, and with a body as JSON if there is one. The answer
 * comes as {status, statusText, data}, where data is null if it is no JSON: to onLoad with a status
 * of success, else to onError. Neither is called after cancel() of what is returned.
 */
function request(url, method, body, onLoad, onError, busyIndicator) {
    const token = Lumenboard.LBAPI.accessToken;
    const hasPassword = body ? body.password !== undefined : false;
    const xhr = new XMLHttpRequest();
    let isCancelled = false;
    xhr.open(method, url);
    xhr.setRequestHeader("Accept", "application/json");
    xhr.setRequestHeader("Authorization", "Bearer " + token);
    xhr.setRequestHeader("Accept-Language", Qt.locale().name.replace("_", "-"));
    if (body)
        xhr.setRequestHeader("Content-Type", "application/json; charset=UTF-8");
    xhr.onreadystatechange = () => {
        if (xhr.readyState !== XMLHttpRequest.DONE || isCancelled)
            return;
        busyIndicator.running = false;
        let data = null;
        try {
            data = JSON.parse(xhr.responseText);
        } catch (error) {
            console.warn("Failed to parse reponse:", masked(xhr.responseText, token, hasPassword));
        }
        const result = {
            "status": xhr.status,
            "statusText": xhr.statusText,
            "data": data
        };
        if (xhr.status >= 200 && xhr.status < 400) {
            onLoad(result);
        } else {
            console.warn("Request error", masked(xhr.responseText, token, hasPassword));
            onError(result);
        }
    };
    busyIndicator.running = true;
    xhr.send(body ? JSON.stringify(body) : undefined);
    return {
        "cancel": () => {
            isCancelled = true;
            busyIndicator.running = false;
            xhr.abort();
        }
    };
}
