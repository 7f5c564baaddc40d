// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

import "../common"

/** All events in large type, one per page: a swipe turns the page, a tap anywhere closes it. */
Item {
    id: root

    property var events: []
    readonly property bool shown: state === "shown"

    /** Shows the event at @p index. */
    function open(index: int) {
        pages.positionViewAtIndex(index, ListView.SnapPosition);
        state = "shown";
    }

    /** Id of the event on the open page, -1 if the carousel is closed. */
    function currentId(): int {
        return shown && pages.currentIndex >= 0 ? events[pages.currentIndex].id : -1;
    }

    /** Call after a change of events: stays on the event with @p id, or closes if it is gone. */
    function keep(id: int) {
        if (!shown)
            return;
        for (let i = 0; i < events.length; ++i) {
            if (events[i].id === id) {
                pages.positionViewAtIndex(i, ListView.SnapPosition);
                return;
            }
        }
        close();
    }

    function close() {
        state = "";
    }

    enabled: visible
    opacity: 0
    scale: 0
    visible: opacity > 0

    // A tap beside the carousel closes it and does not reach the items below.
    MouseArea {
        anchors {
            fill: parent
            margins: -Math.max(root.width, root.height) / 2
        }
        onClicked: root.close()
    }

    ListView {
        id: pages

        objectName: "pages"
        anchors.fill: parent
        clip: true
        highlightRangeMode: ListView.StrictlyEnforceRange
        model: root.events
        orientation: ListView.Horizontal
        snapMode: ListView.SnapOneItem
        delegate: Item {
            id: page

            required property var modelData

            width: ListView.view.width
            height: ListView.view.height

            EventDetail {
                Accessible.onPressAction: root.close()
                anchors {
                    fill: parent
                    leftMargin: 0.05 * page.width
                    rightMargin: 0.05 * page.width
                }
                bgColor: Style.cEdBg
                bgOpacity: 0.985
                contentMargin: 0.05 * height
                event: page.modelData
                onTapped: root.close()
            }

            MouseArea {
                anchors.fill: parent
                z: -1
                onClicked: root.close()
            }
        }
    }

    states: State {
        name: "shown"

        PropertyChanges {
            target: root
            opacity: 1
            scale: 1
        }
    }
    transitions: Transition {
        NumberAnimation {
            properties: "opacity"
            duration: 200
        }
        NumberAnimation {
            properties: "scale"
            duration: 150
        }
    }
}
