// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import Lumenboard 1.0

/** The root item: a stack of views, the side menu, the notifications and the keyboard. */
Page {
    id: root

    readonly property LBConfig config: LBAPI.config
    readonly property LBEventData eventData: LBAPI.eventData

    /** Back to the view below the current one. */
    function pop() {
        LBAPI.scanTransponder = false;
        stackView.pop();
    }

    /** Back to the start view, for the next person. */
    function reset() {
        LBAPI.scanTransponder = false;
        if (drawer.item)
            drawer.item.close();
        stackView.clear(StackView.Immediate);
        stackView.push(Qt.resolvedUrl(config.initialItem), {}, StackView.Immediate);
    }

    Accessible.name: qsTr("Lumenboard")
    background: null // the window is cleared in the same colour
    width: LBAPI.debug ? 1920 : Screen.width
    height: LBAPI.debug ? 1200 : Screen.height
    font {
        family: "Maven Pro"
        pointSize: config.fontBaseSize
    }

    Connections {
        target: LBAPI

        function onReset() {
            root.reset();
        }
    }

    // Pushed views emit these signals when a person leaves them; start views lack them.
    Connections {
        ignoreUnknownSignals: true
        target: stackView.currentItem

        function onBackWanted() {
            root.pop();
        }

        function onResetWanted() {
            root.reset();
        }
    }

    StackView {
        id: stackView

        anchors {
            left: parent.left
            right: parent.right
            top: parent.top
        }
        height: keyboard.item ? Math.min(keyboard.item.y, warningLine.y) : warningLine.y
        initialItem: Qt.resolvedUrl(root.config.initialItem)
        onCurrentItemChanged: if (currentItem)
            currentItem.forceActiveFocus()
        // The keyboard is by far the most expensive item of the page, and no start view has a text
        // field. Load it with the first view that is pushed, before any field can take focus.
        onDepthChanged: if (depth > 1)
            keyboard.load()
    }

    ToolButton {
        id: menuButton

        objectName: "menuButton"
        Accessible.name: qsTr("Menu")
        font {
            family: "Font Awesome"
            pointSize: 2 * Qt.application.font.pointSize
            weight: Font.Black
        }
        text: "\uf0c9"
        visible: stackView.depth === 1
        onClicked: {
            drawer.load();
            if (drawer.item)
                drawer.item.open();
        }
    }

    // Loaded by URL: a type would be compiled with this file, together with all that it imports,
    // and the first frame would wait for it.
    Loader {
        id: drawer

        function load() {
            if (!item)
                setSource("../components/MainDrawer.qml", {
                    "parent": root,
                    "stackView": stackView
                });
        }
    }

    // Not needed for the first frame, but soon after it: for a swipe from the edge, or for a card.
    Timer {
        interval: 1000
        running: true
        onTriggered: {
            drawer.load();
            notifications.load();
        }
    }

    Loader {
        id: notifications

        readonly property bool wanted: LBAPI.notifications.length > 0

        function load() {
            if (!item)
                setSource("../components/Notifications.qml", {
                    "parent": root
                });
        }

        onWantedChanged: if (wanted)
            load()
        Component.onCompleted: if (wanted)
            load()
    }

    // The notices must not cover the line below.
    Binding {
        target: notifications.item
        property: "height"
        value: warningLine.y
        when: notifications.item !== null
    }

    Loader {
        id: warningLine

        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
        }
        height: item ? item.implicitHeight : 0
        active: LBAPI.cardWarning !== "" || LBAPI.roomWarning !== ""
        source: "../components/WarningLine.qml"
    }

    Loader {
        id: keyboard

        function load() {
            if (!item)
                setSource("../components/KeyboardPanel.qml", {
                    "page": root
                });
        }

        z: 10000
    }
}
