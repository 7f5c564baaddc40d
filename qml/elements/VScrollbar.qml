// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** A slim bar at the right edge of its parent that shows which part of a list is visible. */
Item {
    id: root

    property color bgColor: "gray"
    property color barColor: "black"
    /// top of the visible part, 0..1
    property real visibleAreaY: 0
    /// height of the visible part, 0..1
    property real visibleAreaRatio: 1
    /// the list is moving; the bar is visible only then
    property bool moving: false

    width: 10
    opacity: moving ? 0.5 : 0
    anchors {
        top: parent.top
        right: parent.right
        bottom: parent.bottom
    }

    Behavior on opacity {
        NumberAnimation {
            duration: 200
        }
    }

    Rectangle {
        anchors.fill: parent
        color: root.bgColor
    }

    Rectangle {
        y: root.visibleAreaY * root.height
        width: parent.width
        height: root.visibleAreaRatio * root.height
        color: root.barColor
        radius: width / 2
    }
}
