// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

pragma Singleton

import QtQuick 2.15
import Lumenboard 1.0

import "Style.js" as S

/** All colours and text styles of the interface. */
QtObject {
    id: root

    readonly property QtObject main: QtObject {
        readonly property color notificationsBg: "black"
        readonly property real notificationsOpacity: 0.75
    }
    readonly property QtObject list: QtObject {
        readonly property color cOdd: "#5e5e5e"
        readonly property color cEven: "#727272"
    }
    readonly property QtObject notifications: QtObject {
        /// duration of the transitions, ms
        readonly property int td: 250
    }
    readonly property QtObject notification: QtObject {
        readonly property var title: new S.TextStyle(root.cHighlight1, root.fH1)
        readonly property var message: new S.TextStyle(root.cText, root.fDefault)

        /** Name of the icon for a type of LBNotification. */
        function icon(type: int): string {
            switch (type) {
            case LBNotification.CONFIRMATION:
                return "confirmation";
            case LBNotification.WARNING:
                return "warning";
            case LBNotification.ERR:
                return "error";
            case LBNotification.LOADING:
                return "loading";
            default:
                return "info";
            }
        }
    }

    readonly property color cMainBg: "#3b3b3b"
    readonly property color cText: "white"
    readonly property color cHighlight1: "#93b1bb"
    readonly property color cEdBg: "#222"
    readonly property color cWarningBg: "#8a3324"
    /// the hint in an empty text field, legible on the dark style's background
    readonly property color cPlaceholder: "#b0b0b0"

    readonly property var fLH1: new S.FontStyle(3, S.RelSize, Font.Bold)
    readonly property var fLH2: new S.FontStyle(2.4, S.RelSize, Font.Bold)
    readonly property var fLH3: new S.FontStyle(1.8, S.RelSize, Font.Normal)
    readonly property var fLDefault: new S.FontStyle(1.2, S.RelSize)
    readonly property var fH1: new S.FontStyle(1.6, S.RelSize, Font.Bold)
    readonly property var fH2: new S.FontStyle(1.34, S.RelSize, Font.Bold)
    readonly property var fH3: new S.FontStyle(1.167, S.RelSize, Font.Normal)
    readonly property var fDefault: new S.FontStyle(1, S.RelSize)

    readonly property var errorText: new S.TextStyle(cText, new S.FontStyle(2, S.RelSize))

    readonly property var warningLine: new S.TextStyle(cText, fH3)

    readonly property var dvLocationName: new S.TextStyle(cText, new S.FontStyle(5, S.RelSize, Font.Black, { "family": "Maven Pro" }))
    readonly property var dvTime: new S.TextStyle(cText, new S.FontStyle(14, S.RelSize, Font.Bold, { "family": "MavenPro" }))
    readonly property var dvDate: new S.TextStyle(cText, new S.FontStyle(2.5, S.RelSize, Font.Normal, { "family": "MavenPro" }))

    readonly property var eoLocationName: new S.TextStyle(cText, new S.FontStyle(2.4, S.RelSize, Font.Bold, { "family": "Bandolino" }))
    readonly property var eoSection: new S.TextStyle(cText, fH2)
    readonly property var eoTitle: new S.TextStyle(cHighlight1, fH2)
    readonly property var eoSpeakers: new S.TextStyle(cHighlight1, fH3)
    readonly property var eoTime: new S.TextStyle(cText, fH2)
    readonly property var eoAudiences: new S.TextStyle(cText, fDefault)

    readonly property var edTitle: new S.TextStyle(cHighlight1, fLH2)
    readonly property var edSpeakers: new S.TextStyle(cHighlight1, fLH3)
    readonly property var edTime: new S.TextStyle(cText, fLH2)
    readonly property var edAudiences: new S.TextStyle(cText, fLDefault)
    readonly property var edDescription: new S.TextStyle(cText, fLDefault)
    readonly property var edHeading: new S.TextStyle(cText, new S.FontStyle(2.5, S.RelSize, Font.DemiBold, { "underline": true }))
    readonly property var edNoEvent: new S.TextStyle(cText, new S.FontStyle(2.5, S.RelSize, Font.Normal))
}
