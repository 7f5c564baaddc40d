// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** A text in one of the styles of Style, shown as it is, never as markup. */
Text {
    id: root

    /// a TextStyle, applied whenever it is set
    property var xstyle

    onXstyleChanged: if (xstyle)
        xstyle.apply(root)
    textFormat: Text.PlainText
}
