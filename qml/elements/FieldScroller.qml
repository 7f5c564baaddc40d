// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** A centred column of items, as wide as this item. If too high, scrolls to the focused field. */
Flickable {
    id: root

    default property alias content: block.data
    property alias spacing: block.spacing
    /// the field with the focus, or null
    property Item focusedField
    /// empty space below a column that is too high, px
    property real roomBelow: 0
    readonly property bool fits: block.height <= height

    function showField() {
        if (!focusedField) {
            contentY = 0;
            return;
        }
        const top = focusedField.mapToItem(contentItem, 0, 0).y;
        contentY = Math.max(0, Math.min(top - (height - focusedField.height) / 2, contentHeight - height));
    }

    boundsBehavior: Flickable.StopAtBounds
    contentHeight: fits ? height : block.height + roomBelow
    onFocusedFieldChanged: showField()
    onHeightChanged: showField()

    Column {
        id: block

        // As wide as the longest item, the column would itself move when one of its items changes.
        width: parent.width
        anchors.verticalCenter: parent.verticalCenter
    }
}
