// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0

import "../common"
import "../elements"

/**
 * All details of one event in large type. A long description can be scrolled below the other lines.
 * These are cut where they leave no room, or the whole page can be scrolled.
 */
Item {
    id: root

    /// the LBEvent; null shows nothing
    property var event
    property bool showDate: true
    property alias bgColor: background.color
    property alias bgOpacity: background.opacity
    property int contentMargin: 5
    /// scrolls what does not fit, instead of cutting it
    property bool scrolls: false
    /// maximum height of the lines above the description where they are cut, px
    readonly property real roomAbove: content.height * 0.9
    /// too little room is left to scroll the description alone
    readonly property bool scrollsAll: scrolls && details.room < Math.min(details.contentHeight, content.height * 0.3)
    readonly property Flickable scrolled: scrollsAll ? content : details

    signal tapped

    /** How many lines of @p item, of those that fit into @p share of roomAbove; at least one. */
    function linesWithin(item: Item, share: real): int {
        if (scrolls)
            return 0x7fffffff; // all
        // Do not use fontInfo: it changes during the layout that depends on this result.
        return Math.max(1, Math.floor(roomAbove * share / (item.font.pixelSize * 1.25)));
    }

    /** How far a person has scrolled; for scrollTo(). */
    function position(): point {
        return Qt.point(details.contentY, content.contentY);
    }

    function scrollTo(position: point) {
        details.contentY = position.x;
        content.contentY = position.y;
    }

    Accessible.description: event ? event.description : ""
    Accessible.name: Array.from(lines.children, line => line.text).filter(Boolean).join(", ")
    Accessible.role: Accessible.Paragraph
    enabled: Boolean(event)
    visible: enabled
    clip: true
    onVisibleChanged: scrollTo(Qt.point(0, 0)) // the next person starts at the top

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

    TapArea {
        anchors.fill: parent
        onTapped: root.tapped()
    }

    Flickable {
        id: content

        anchors {
            fill: parent
            margins: root.contentMargin
        }
        clip: root.scrollsAll
        contentHeight: root.scrollsAll ? details.y + details.height : height
        interactive: root.scrollsAll

        TapArea {
            width: content.width
            height: content.contentHeight
            onTapped: root.tapped()
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
            id: details

            readonly property real room: content.height - y
            readonly property real lineHeight: description.contentHeight / Math.max(1, description.lineCount)

            anchors {
                top: lines.bottom
                topMargin: details.contentHeight > 0 ? 20 : 0
                horizontalCenter: parent.horizontalCenter
            }
            width: description.width
            // Whole lines only: half a line at the lower edge looks broken.
            height: root.scrollsAll ? contentHeight : Math.min(contentHeight, Math.floor(room / lineHeight) * lineHeight)
            clip: true
            visible: height > 0
            contentHeight: description.text === "" ? 0 : description.height
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

            TapArea {
                anchors.fill: description
                onTapped: root.tapped()
            }
        }
    }

    Item {
        x: parent.width - (root.contentMargin + bar.width) / 2
        y: content.y + (root.scrollsAll ? 0 : details.y)
        width: bar.width
        height: root.scrolled.height

        VScrollbar {
            id: bar

            barColor: "white"
            // Where people come to read, it tells that there is more.
            moving: root.scrolled.interactive && (root.scrolls || root.scrolled.moving)
            visibleAreaRatio: root.scrolled.visibleArea.heightRatio
            visibleAreaY: root.scrolled.visibleArea.yPosition
        }
    }
}
