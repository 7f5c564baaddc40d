// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** Emits tapped() for a press and release in one place; clicked() also comes at a drag's end. */
MouseArea {
    id: root

    /// where the press began
    property point start

    signal tapped

    onPressed: root.start = Qt.point(mouse.x, mouse.y)
    onClicked: {
        const limit = Qt.styleHints.startDragDistance;
        if (Math.abs(mouse.x - root.start.x) < limit && Math.abs(mouse.y - root.start.y) < limit)
            root.tapped();
    }
}
