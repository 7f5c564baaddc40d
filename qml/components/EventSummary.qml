// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0

import "../common"
import "../elements"

/** One entry of the list of events. */
Item {
    id: root

    /// the LBEvent, or null
    property var event
    property alias bgColor: background.color

    Accessible.name: Array.from(content.children, line => line.text).filter(Boolean).join(", ")
    Accessible.role: Accessible.ListItem
    width: parent ? parent.width : 0
    height: content.height + 26

    Rectangle {
        id: background

        anchors {
            fill: parent
            topMargin: 3
            bottomMargin: 3
        }
    }

    Column {
        id: content

        width: root.width - 10
        anchors.centerIn: parent

        CenteredText {
            text: root.event ? root.event.title : ""
            xstyle: Style.eoTitle
        }

        CenteredText {
            text: root.event ? root.event.speakers : ""
            xstyle: Style.eoSpeakers
        }

        CenteredText {
            text: root.event ? root.event.startEndTimeStr : ""
            topPadding: 10
            xstyle: Style.eoTime
        }

        CenteredText {
            //: %1 is a list of audience groups
            text: root.event && root.event.mAudiencesStr !== "" ? qsTr("Mandatory for: %1").arg(root.event.mAudiencesStr) : ""
            topPadding: 10
            xstyle: Style.eoAudiences
        }

        CenteredText {
            //: %1 is a list of audience groups
            text: root.event && root.event.oAudiencesStr !== "" ? qsTr("Optional for: %1").arg(root.event.oAudiencesStr) : ""
            topPadding: root.event && root.event.mAudiencesStr !== "" ? 0 : 10
            xstyle: Style.eoAudiences
        }
    }
}
