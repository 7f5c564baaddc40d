// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/**
 * Takes the presses on some items of its parent for a moment after restart(), and at the start. An
 * offset that swings to and fro tells the person that the press did not count.
 */
MouseArea {
    id: root

    property list<Item> items
    /// ms
    property int duration: 300
    /// where the parent should be drawn, relative to its place, px
    property real offset: 0

    function restart() {
        timer.restart();
    }

    anchors.fill: parent
    enabled: timer.running
    onPressed: {
        const isHit = Array.from(root.items).some(item => item.contains(root.mapToItem(item, mouse.x, mouse.y)));
        mouse.accepted = isHit;
        if (isHit)
            swing.restart();
    }

    Timer {
        id: timer

        interval: root.duration
        running: true
    }

    SequentialAnimation on offset {
        id: swing

        loops: 2
        running: false

        NumberAnimation {
            to: 12
            duration: 40
        }

        NumberAnimation {
            to: -12
            duration: 80
        }

        NumberAnimation {
            to: 0
            duration: 40
        }
    }
}
