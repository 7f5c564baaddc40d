// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** A centred text as wide as its parent that takes no room while it is empty. */
StyledText {
    id: root

    width: parent ? parent.width : 0
    // Undefined leaves the height to the text; any number would make the text elide to it.
    height: text === "" ? 0 : undefined
    visible: text !== ""
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignHCenter
    wrapMode: Text.Wrap
}
