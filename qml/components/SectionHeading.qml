// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

import "../common"
import "../elements"

/** An underlined heading of the schedule view that can fade out of the way. */
CenteredText {
    id: root

    property bool faded: false

    Accessible.name: text
    Accessible.role: Accessible.Heading
    opacity: faded ? 0 : 1
    xstyle: Style.edHeading

    Behavior on opacity {
        NumberAnimation {
            duration: 200
        }
    }
}
