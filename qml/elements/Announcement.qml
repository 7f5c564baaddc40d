// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** An item without visuals whose text a screen reader speaks whenever it changes. */
Item {
    id: root

    property string text

    // Screen readers speak a notification that becomes visible; they ignore one that changes.
    function announce() {
        visible = false;
        visible = text !== "";
    }

    Accessible.name: text
    Accessible.role: Accessible.Notification
    visible: false
    onTextChanged: Qt.callLater(announce) // once for several changes
}
