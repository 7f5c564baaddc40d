// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0

import "../common"
import "../elements"

/** Tells why cards are not read and why no room is shown, a line each. Nobody can close it. */
Rectangle {
    id: root

    implicitHeight: label.implicitHeight
    color: Style.cWarningBg

    Announcement {
        anchors.fill: parent
        text: label.text
    }

    CenteredText {
        id: label

        anchors.centerIn: parent
        bottomPadding: 4
        leftPadding: 8
        rightPadding: 8
        text: [LBAPI.cardWarning, LBAPI.roomWarning].filter(Boolean).join("\n")
        topPadding: 4
        xstyle: Style.warningLine
    }
}
