// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import Lumenboard 1.0

LumenboardCase {
    id: root

    property Item view
    property Item stack
    property Item menuButton

    function openMenu() {
        mouseClick(menuButton);
        const menu = find(view, item => item.item instanceof Drawer && item.item.edge === Qt.LeftEdge).item;
        tryCompare(menu, "opened", true);
        return menu;
    }

    function notify(title) {
        const notification = create({ title: title });
        LBAPI.addNotification(notification);
        return notification;
    }

    function init() {
        view = make("views/Main.qml", { width: width, height: height });
        stack = find(view, item => item.depth !== undefined);
        menuButton = findChild(view, "menuButton");
        waitForRendering(view);
    }

    function test_resetReturnsToTheStartView() {
        const menu = openMenu();
        verify(readable(menu.contentItem).includes("v0.8.0"));
        mouseClick(findChild(menu.contentItem, "registerTransponder"));
        tryCompare(menu, "visible", false);
        compare([stack.depth, stack.currentItem.activeFocus, menuButton.visible, LBAPI.scanTransponder], [2, true, false, true]);
        menu.open();
        LBAPI.emitReset();
        compare([stack.depth, menuButton.visible, LBAPI.scanTransponder], [1, true, false]);
        tryCompare(menu, "visible", false);
    }

    function test_notificationsLeaveTheRestUsable() {
        const below = createTemporaryQmlObject("import QtQuick 2.15; MouseArea { property int taps; anchors.fill: parent; onClicked: taps += 1 }", root);
        const made = ["Erste", "Zweite"].map(notify);
        const panel = find(view, item => item.wanted).item;
        tryCompare(panel, "opened", true);
        tryVerify(() => readable(panel.contentItem).join() === "Zweite,Erste");
        mouseClick(below, 50, 50);
        compare(below.taps, 1);
        cardReadiness.onReaderStateChanged(false);
        verify(withText(view, LBAPI.cardWarning) && stack.height < height - 20 && panel.height === stack.height);
        made.forEach(each => each.remove());
        tryCompare(panel, "visible", false);
    }

    function test_clockShowsTheGermanDate() {
        const clock = make("views/Default.qml", { width: width, height: height });
        const date = /^((Mon|Diens|Donners|Frei|Sams|Sonn)tag|Mittwoch), \d{1,2}\.\d{1,2}\.\d\d$/;
        tryVerify(() => readable(clock).some(text => date.test(text)));
    }

    name: "Main"
}
