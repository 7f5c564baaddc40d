// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

import "../common"
import "../elements"

/** The text shown in place of a missing event. */
StyledText {
    Accessible.name: text
    Accessible.role: Accessible.StaticText
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    wrapMode: Text.Wrap
    xstyle: Style.edNoEvent
}
