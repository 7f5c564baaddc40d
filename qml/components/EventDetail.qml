// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0

import "../common"
import "../elements"

/** All details of one event in large type; a long description can be scrolled. */
Item {
    id: root

    /// the LBEvent; null shows nothing
    property var event
    property bool showDate: true
    property alias bgColor: background.color
    property alias bgOpacity: background.opacity
    property int contentMargin: 5
    /// maximum height of the lines above the description, px
    readonly property real roomAbove: content.height * 0.9

    signal tapped

    /** How many lines in @p item's font fit into @p share of roomAbove; at least one. */
    function linesWithin(item: Item, share: real): int {
        // Do not use fontInfo: it changes during the layout that depends on this result.
        return Math.max(1, Math.floor(roomAbove * share / (item.font.pixelSize * 1.25)));
    }

    Accessible.description: event ? event.description : ""
    Accessible.name: Array.from(lines.children, line => line.text).filter(Boolean).join(", ")
    Accessible.role: Accessible.Paragraph
    enabled: Boolean(event)
    visible: enabled
    clip: true

    Rectangle {
        id: background

        anchors {
            fill: parent
            topMargin: 3
            bottomMargin: 3
        }
        color: "transparent"
        opacity: 0.5
    }

    MouseArea {
        anchors.fill: parent
        onClicked: root.tapped()
    }

    Item {
        id: content

        anchors {
            fill: parent
            margins: root.contentMargin
        }

        Column {
            id: lines

            width: parent.width

            CenteredText {
                maximumLineCount: root.linesWithin(this, 0.45)
                text: root.event ? root.event.title : ""
                xstyle: Style.edTitle
            }

            CenteredText {
                maximumLineCount: root.linesWithin(this, 0.2)
                text: root.event ? root.event.speakers : ""
                xstyle: Style.edSpeakers
            }

            CenteredText {
                text: {
                    if (!root.event)
                        return "";
                    return root.showDate ? root.event.startDateStr + ", " + root.event.startEndTimeStr : root.event.startEndTimeStr;
                }
                topPadding: 10
                xstyle: Style.edTime
            }

            CenteredText {
                maximumLineCount: root.linesWithin(this, 0.15)
                //: %1 is a list of audience groups
                text: root.event && root.event.mAudiencesStr !== "" ? qsTr("Mandatory for: %1").arg(root.event.mAudiencesStr) : ""
                topPadding: 10
                xstyle: Style.edAudiences
            }

            CenteredText {
                maximumLineCount: root.linesWithin(this, 0.15)
                //: %1 is a list of audience groups
                text: root.event && root.event.oAudiencesStr !== "" ? qsTr("Optional for: %1").arg(root.event.oAudiencesStr) : ""
                topPadding: root.event && root.event.mAudiencesStr !== "" ? 0 : 10
                xstyle: Style.edAudiences
            }
        }

        Flickable {
            readonly property real room: content.height - y
            readonly property real lineHeight: description.contentHeight / Math.max(1, description.lineCount)

            anchors {
                top: lines.bottom
                topMargin: 20
                horizontalCenter: parent.horizontalCenter
            }
            width: description.width
            // Whole lines only: half a line at the lower edge looks broken.
            height: Math.min(contentHeight, Math.floor(room / lineHeight) * lineHeight)
            clip: true
            visible: height > 0
            contentHeight: description.height
            contentWidth: width
            interactive: contentHeight > height

            StyledText {
                id: description

                width: Math.min(natural.implicitWidth, content.width * 0.7)
                text: root.event ? root.event.description : ""
                wrapMode: Text.Wrap
                xstyle: Style.edDescription
            }

            // Measures the text: a width bound to its own implicit width would loop.
            StyledText {
                id: natural

                text: description.text
                visible: false
                xstyle: Style.edDescription
            }

            MouseArea {
                anchors.fill: description
                onClicked: root.tapped()
            }
        }
    }
}
