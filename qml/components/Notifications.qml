// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15
import Lumenboard 1.0

import "../common"

/** All notices, newest at the top, in a panel that leaves the rest of the screen usable. */
Drawer {
    id: root

    Component.onCompleted: {
        contentItem.parent.Accessible.name = qsTr("Notices"); // a drawer has no title
        scrollView.ScrollBar.vertical.Accessible.name = qsTr("Scroll the notices");
    }
    focus: false // a notice must not interrupt a person who types
    width: parent.width / 2
    height: parent.height
    closePolicy: Popup.NoAutoClose
    dim: false
    edge: Qt.RightEdge
    interactive: false
    modal: false
    // Slide in, but show something in the first frame: a person with a card waits for a response.
    enter: Transition {
        NumberAnimation {
            property: "position"
            from: 0.2
            to: 1
            duration: Style.notifications.td
            easing.type: Easing.OutCubic
        }
    }
    z: 1 // above the menu: countdowns go on while it is open
    visible: LBAPI.notifications.length > 0
    background: Rectangle {
        color: Style.main.notificationsBg
        opacity: Style.main.notificationsOpacity
    }

    ScrollView {
        id: scrollView

        anchors {
            fill: parent
            margins: 6
        }
        ScrollBar.horizontal.policy: ScrollBar.AlwaysOff

        ListView {
            // Rows beyond the view are made in slices, and one whose notice goes meanwhile stays in memory.
            cacheBuffer: 0
            clip: true // a line may be shown below the panel
            model: LBAPI.notifications
            spacing: 6
            // The next person must see the new notice, wherever the last one has scrolled to.
            onCountChanged: if (!moving)
                positionViewAtBeginning()
            delegate: Notification {
                required property int index
                required property var model

                width: parent ? parent.width : 0
                bgColor: index % 2 === 0 ? Style.list.cEven : Style.list.cOdd
                notification: model.data
                transformOrigin: Item.Top
            }
            add: Transition {
                NumberAnimation {
                    properties: "opacity,scale"
                    from: 0
                    to: 1
                    duration: Style.notifications.td
                }
            }
            remove: Transition {
                NumberAnimation {
                    properties: "opacity,scale"
                    to: 0
                    duration: Style.notifications.td
                }
            }
            displaced: Transition {
                NumberAnimation {
                    alwaysRunToEnd: true
                    properties: "x,y"
                    duration: Style.notifications.td
                }
                NumberAnimation {
                    properties: "opacity, scale"
                    to: 1
                    duration: Style.notifications.td
                }
            }
        }
    }
}
