// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

import "../common"
import "../elements"

/** A list of events, grouped by day. */
ListView {
    id: root

    signal tapped(int index)

    Accessible.name: qsTr("Events")
    Accessible.role: Accessible.List
    clip: true
    section {
        property: "startDateStr"
        delegate: Item {
            width: root.width
            height: heading.implicitHeight + 10

            CenteredText {
                id: heading

                Accessible.name: text
                Accessible.role: Accessible.Heading
                anchors.bottom: parent.bottom
                // Not a required property: the list reuses a heading for another day and would set
                // that only once.
                text: section
                xstyle: Style.eoSection
            }
        }
    }
    delegate: EventSummary {
        required property int index
        required property var modelData

        Accessible.onPressAction: root.tapped(index)
        bgColor: index % 2 === 0 ? Style.list.cEven : Style.list.cOdd
        event: modelData

        MouseArea {
            anchors.fill: parent
            onClicked: root.tapped(parent.index)
        }
    }

    VScrollbar {
        moving: root.moving
        visibleAreaRatio: root.visibleArea.heightRatio
        visibleAreaY: root.visibleArea.yPosition
    }
}
