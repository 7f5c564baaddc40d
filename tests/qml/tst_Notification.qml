// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0

LumenboardCase {
    id: root

    property Item card
    property Item guard

    function show(properties) {
        const notification = create(properties);
        card = make("components/Notification.qml", { notification: notification, width: 640 });
        guard = findChild(card, "guard");
        waitForRendering(card);
        tryCompare(guard, "enabled", false);
        return notification;
    }

    /** As when a new notice comes: a tap may have been aimed at what was there before. */
    function tapWhileMoved(item, notification, signalName, changing) {
        card[changing || "y"] += 0.1;
        const heard = tap(item, notification, signalName);
        tryVerify(() => guard.offset !== 0);
        tryCompare(guard, "enabled", false);
        return heard;
    }

    function addButton(notification, properties) {
        const button = create(properties, "LBNotificationButton");
        bench.addButton(notification, button);
        waitForRendering(card);
        return button;
    }

    /** Taps @p item and returns the arguments of each signal that @p notification then emitted. */
    function tap(item, notification, signalName) {
        const spy = createTemporaryQmlObject(`import QtTest 1.15; SignalSpy { signalName: "${signalName}" }`, root);
        spy.target = notification;
        mouseClick(item);
        return spy.signalArguments.map(each => each[0]);
    }

    function test_controls_data() {
        return [
            { tag: "close", set: { closable: true }, shown: ["close"], signalName: "removed" },
            { tag: "confirm", set: { confirmable: true }, shown: ["confirm"], signalName: "confirmed" },
            { tag: "cancel", set: { cancelable: true }, shown: ["cancel"], signalName: "canceled" },
            { tag: "countdown", set: { timeout: 60000 }, shown: ["countdown"] },
            { tag: "all", set: { closable: true, confirmable: true, cancelable: true, timeout: 60000 }, shown: ["close", "confirm", "countdown", "cancel"] },
        ];
    }

    function test_controls(data) {
        const notification = show(Object.assign({ closable: false, confirmable: false, cancelable: false }, data.set));
        const controls = ["close", "confirm", "countdown", "cancel"].map(name => findChild(card, name));
        compare(controls.filter(each => each && each.visible).map(each => each.objectName), data.shown);
        if (!data.signalName)
            return;
        compare(tapWhileMoved(findChild(card, data.tag), notification, data.signalName), []);
        compare(tap(findChild(card, data.tag), notification, data.signalName).length, 1);
    }

    function test_tapOnTheCountdown_data() {
        return [{ tag: "stops it", cancelable: true }, { tag: "does nothing", cancelable: false }];
    }

    function test_tapOnTheCountdown(data) {
        const notification = show({ closable: false, timeout: 60000, timeoutCancelable: data.cancelable });
        const countdown = findChild(card, "countdown");
        tryVerify(() => countdown.currentValue > 0 && countdown.currentValue < 60000);
        tapWhileMoved(countdown, notification, "timeoutChanged");
        compare(notification.timeout, 60000);
        mouseClick(countdown);
        compare(notification.timeout, data.cancelable ? 0 : 60000);
        tryVerify(() => (findChild(card, "countdown") === null) === data.cancelable);
        compare(findChild(card, "close").visible, data.cancelable);
    }

    function test_icon_data() {
        return ["INFO", "CONFIRMATION", "WARNING", "ERR", "LOADING"].map(type => ({ tag: type, icon: type === "ERR" ? "error" : type.toLowerCase() }));
    }

    function test_icon(data) {
        const notification = show({ type: LBNotification[data.tag] });
        const icon = find(card, item => item.source !== undefined);
        compare(String(icon.source), "qrc:/icons/" + data.icon + ".svg");
        for (let again = 0; data.tag === "LOADING" && again < 2; ++again) {
            notification.type = LBNotification.LOADING;
            tryVerify(() => icon.rotation > 5);
            notification.type = LBNotification.INFO;
        }
        compare(icon.rotation, 0);
    }

    function test_extraButtons() {
        const notification = show({});
        addButton(notification, { text: "Kommen", enabled: false, icon: "qrc:/fa/sign-in.svg" });
        addButton(notification, { text: "Gehen" });
        addButton(notification, { text: "Pause", enabled: false, highlighted: true });
        const buttons = all(card, item => item.highlighted !== undefined && item.objectName === "");
        const found = buttons.sort((a, b) => a.mapToItem(card, 0, 0).x - b.mapToItem(card, 0, 0).x);
        compare(found.map(each => readable(each)[0]), ["Kommen", "Gehen", "Pause"]);
        compare(found.map(each => [each.enabled, each.highlighted]), [[false, false], [true, false], [true, true]]);
        compare(tapWhileMoved(found[1], notification, "buttonClicked", "scale"), []);
        compare(found.map(each => tap(each, notification, "buttonClicked")), [[], [1], []]);
    }

    function test_markupIsShownAsItIs() {
        const hostile = "<b>x</b><img src='http://127.0.0.1:9/'>";
        addButton(show({ title: hostile, message: hostile }), { text: hostile });
        const texts = all(card, item => isText(item) && item.text === hostile);
        compare(texts.map(each => each.textFormat), Array(3).fill(Text.PlainText));
    }

    function test_extraButtonGlowsWhileFlashing() {
        const button = addButton(show({}), { text: "Kommen" });
        const glow = find(card, item => item.glowRadius === 15);
        button.flashing = true;
        tryVerify(() => glow.opacity > 0.6);
        tryVerify(() => glow.opacity < 0.4);
        tryVerify(() => glow.opacity > 0.6);
        button.flashing = false;
        tryCompare(glow, "opacity", 0);
    }

    function test_cardIsAsHighAsItsTexts() {
        const notification = show({ message: "kurz" });
        const before = card.height;
        tryCompare(card, "extraHeight", 1);
        notification.message = "Zeile\n".repeat(20);
        tryVerify(() => card.height > before + 200);
        const message = withText(card, notification.message);
        verify(message.mapToItem(card, 0, message.height).y <= card.height);
    }

    name: "Notification"
}
