// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0

import "../common"
import "../components"
import "../elements"

/** The schedule view: the current event, the next one, and all events of the room's day. */
FocusScope {
    id: root

    readonly property LBEventLocation location: LBAPI.config.plenarLocation
    /// the location's events, assigned only when the location changes: a new model takes the list
    /// and the carousel back to their start under a visitor's finger
    property var events: []

    // Fresh data may come while somebody scrolls or reads: keep the position and the open page.
    onLocationChanged: {
        const place = eventList.contentY;
        const reading = carousel.place();
        events = location ? location.events : [];
        eventList.contentY = place;
        eventList.returnToBounds();
        carousel.keep(reading);
    }
    Component.onCompleted: events = location ? location.events : []

    SectionHeading {
        id: nowHeading

        width: eventList.x
        faded: carousel.shown
        text: qsTr("Now")
    }

    EventDetail {
        id: currentEvent

        anchors {
            left: parent.left
            right: eventList.left
            top: nowHeading.bottom
            bottom: parent.verticalCenter
            margins: 5
            topMargin: nowHeading.height / 2
        }
        event: root.location ? root.location.currentEvent : null
        showDate: false
    }

    NoEventText {
        anchors.fill: currentEvent
        text: qsTr("Nothing is on right now.")
        visible: !currentEvent.visible
    }

    SectionHeading {
        id: nextHeading

        y: root.height / 2
        width: eventList.x
        faded: carousel.shown
        text: qsTr("Next")
    }

    EventDetail {
        id: nextEvent

        anchors {
            left: parent.left
            right: eventList.left
            top: nextHeading.bottom
            bottom: parent.bottom
            margins: 5
        }
        event: root.location ? root.location.nextEvent : null
    }

    NoEventText {
        anchors.fill: nextEvent
        text: qsTr("No upcoming events.")
        visible: !nextEvent.visible
    }

    CenteredText {
        id: roomName

        Accessible.name: text
        Accessible.role: Accessible.Heading
        anchors {
            top: parent.top
            topMargin: 0.2 * height
            left: eventList.left
            right: eventList.right
        }
        maximumLineCount: 4
        text: root.location ? root.location.name : ""
        xstyle: Style.eoLocationName
    }

    EventList {
        id: eventList

        objectName: "eventList"
        anchors {
            top: roomName.bottom
            topMargin: 0.1 * roomName.height
            right: parent.right
            bottom: asOf.top
        }
        width: parent.width / 3
        model: root.events
        onTapped: carousel.open(index)
    }

    CenteredText {
        id: asOf

        objectName: "asOf"
        Accessible.name: text
        Accessible.role: Accessible.StaticText
        anchors {
            left: eventList.left
            right: eventList.right
            bottom: parent.bottom
        }
        width: eventList.width
        bottomPadding: 4
        text: LBAPI.scheduleAsOf
        topPadding: 4
        xstyle: Style.eoAudiences
    }

    EventCarousel {
        id: carousel

        anchors.centerIn: parent
        width: parent.width
        height: 0.9 * parent.height
        events: root.events
    }

    ErrorBox {
        anchors.centerIn: parent
        maximumTextWidth: 0.6 * root.width
        text: LBAPI.eventData.shownError
        visible: LBAPI.eventData.error
    }
}
