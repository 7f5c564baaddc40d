// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

import "../common"
import "../elements"

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

    /** What a person is reading, for keep(); null if the carousel is closed. */
    function place() {
        return shown && pages.currentItem ? {
            "id": pages.currentItem.modelData.id,
            "position": pages.currentItem.detail.position()
        } : null;
    }

    /** Call after a change of events: stays at @p place, or closes if its event is gone. */
    function keep(place) {
        if (!shown)
            return;
        for (let i = 0; place && i < events.length; ++i) {
            if (events[i].id === place.id) {
                pages.positionViewAtIndex(i, ListView.SnapPosition);
                pages.itemAtIndex(i).detail.scrollTo(place.position);
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
    TapArea {
        anchors {
            fill: parent
            margins: -Math.max(root.width, root.height) / 2
        }
        onTapped: root.close()
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
            property alias detail: detail

            width: ListView.view.width
            height: ListView.view.height

            EventDetail {
                id: detail

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
                scrolls: true
                onTapped: root.close()
            }

            TapArea {
                anchors.fill: parent
                z: -1
                onTapped: root.close()
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
