// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

.import Lumenboard 1.0 as Lumenboard

/**
 * Returns @p text for the log, without the token and cut to a line's length. Leaves out the whole
 * response to a request with a password, which could echo the password in any spelling.
 */
function masked(text, token, hasPassword) {
    if (hasPassword)
        return "******** (" + text.length + " characters)";
    const spellings = [token, encodeURIComponent(token), JSON.stringify(token).slice(1, -1)];
    return spellings.filter(each => each).reduce((rest, each) => rest.split(each).join("********"), text).slice(0, 500);
}

/**
 * Sends a request with the current access token, and with @p body as JSON if there is one. Passes
 * {status, statusText, data} to onLoad if the status is 200 to 399, otherwise to onError; data is null
 * if the response is not JSON. Returns an object whose cancel() prevents both calls.
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
