// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0

LumenboardCase {
    id: root

    readonly property string hostile: `<b>x</b><img src="${bench.countedUrl()}">`

    function test_everyFileLoads_data() {
        // The singleton is loaded by those who import it.
        return bench.qmlFiles().filter(file => file !== "common/Style.qml").map(file => ({ tag: file }));
    }

    function test_everyFileLoads(data) {
        make(data.tag, data.tag.endsWith("KeyboardPanel.qml") ? { page: root } : {});
        waitForRendering(root);
    }

    function test_markupIsShownAsItIs_data() {
        const create = type => createTemporaryQmlObject("import Lumenboard 1.0; " + type + " {}", root);
        return [
            { tag: "schedule", file: "views/LectureRoom.qml", properties: () => ({ width: 1280, height: 800 }), least: 14 },
            { tag: "clock", file: "views/Default.qml", properties: () => ({ width: 1280, height: 800 }), least: 1 },
            { tag: "error", file: "components/ErrorBox.qml", properties: () => ({ text: hostile, maximumTextWidth: 300 }), least: 1 },
            { tag: "notification", file: "components/Notification.qml", properties: () => ({ notification: Object.assign(create("LBNotification"), { title: hostile, message: hostile }) }), least: 2 },
            { tag: "extra button", file: "components/NotificationExtraButton.qml", properties: () => ({ button: Object.assign(create("LBNotificationButton"), { text: hostile }) }), least: 1 },
        ];
    }

    /** Texts from outside are never interpreted as markup, and nothing is fetched for them. */
    function test_markupIsShownAsItIs(data) {
        const text = hostile.replace(/</g, "&lt;");
        bench.set("locationName", hostile);
        verify(bench.show(schedule([hostile, hostile, hostile], hostile, `<description>${text}</description><speakers><speaker>${text}</speaker></speakers><audiences><audience><id>1</id><mandatory>true</mandatory></audience></audiences>`)));
        const requests = bench.requests("schedule");
        const view = make(data.file, data.properties());
        waitForRendering(root);
        const texts = all(view, item => isText(item) && item.text.includes(hostile));
        verify(texts.length >= data.least, texts.length);
        for (const each of texts)
            compare(each.textFormat, Text.PlainText, each.parent);
        compare(bench.requests("schedule"), requests);
    }

    name: "Files"
}
