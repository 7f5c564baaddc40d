// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.VirtualKeyboard 2.15
import QtQuick.VirtualKeyboard.Settings 2.15

/** The on-screen keyboard: parked below the bottom edge, up while a text field wants it. */
InputPanel {
    id: root

    /// the page that the keyboard belongs to
    property Item page

    y: page.height
    width: page.width

    Component.onCompleted: {
        VirtualKeyboardSettings.locale = "de_DE";
        // No other language to switch to: the next person would have to find the way back.
        VirtualKeyboardSettings.activeLocales = ["de_DE"];
    }

    states: State {
        name: "up"
        when: root.active

        PropertyChanges {
            target: root
            y: root.page.height - root.height
        }
    }
    transitions: Transition {
        to: "up"
        reversible: true

        NumberAnimation {
            properties: "y"
            duration: 250
            easing.type: Easing.InOutQuad
        }
    }
}
