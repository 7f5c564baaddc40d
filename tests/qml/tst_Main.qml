// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.VirtualKeyboard 2.15
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
        const notification = Qt.createQmlObject("import Lumenboard 1.0; LBNotification {}", root);
        notification.title = title;
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
        compare([stack.depth, LBAPI.scanTransponder], [2, true]);
        menu.open();
        LBAPI.emitReset();
        compare([stack.depth, stack.currentItem.objectName, LBAPI.scanTransponder], [1, "", false]);
        tryCompare(menu, "visible", false);
    }

    function test_menuBelongsToTheStartView() {
        compare(menuButton.visible, true);
        stack.push(other, {}, StackView.Immediate);
        compare([menuButton.visible, stack.currentItem.activeFocus], [false, true]);
        LBAPI.scanTransponder = true;
        view.pop();
        compare([menuButton.visible, stack.depth, LBAPI.scanTransponder], [true, 1, false]);
    }

    function test_keyboardIsThereBeforeAnyFieldCanTakeFocus() {
        stack.push(other, {}, StackView.Immediate);
        const keyboard = find(view, item => item instanceof InputPanel);
        verify(keyboard);
        compare([keyboard.y, keyboard.width, stack.height], [view.height, view.width, view.height]);
    }

    function test_notificationsLeaveTheRestUsable() {
        const below = createTemporaryQmlObject("import QtQuick 2.15; MouseArea { property int taps; anchors.fill: parent; onClicked: taps += 1 }", root);
        const panel = make("components/Notifications.qml");
        compare(panel.visible, false);
        const made = ["Erste", "Zweite"].map(notify);
        tryCompare(panel, "opened", true);
        tryVerify(() => readable(panel.contentItem).join() === "Zweite,Erste");
        mouseClick(below, 50, 50);
        compare(below.taps, 1);
        made.forEach(each => each.remove());
        tryCompare(panel, "visible", false);
    }

    function test_clockInGerman() {
        bench.set("locationName", "Studio 3");
        const clock = make("views/Default.qml", { width: width, height: height });
        const shows = pattern => readable(clock).some(text => pattern.test(text));
        tryVerify(() => shows(/^\d{1,2}:\d\d$/));
        verify(shows(/^((Mon|Diens|Donners|Frei|Sams|Sonn)tag|Mittwoch), \d{1,2}\.\d{1,2}\.\d\d$/));
        verify(shows(/^Studio 3$/));
    }

    name: "Main"

    Component {
        id: other

        FocusScope {
            objectName: "other"
        }
    }
}
