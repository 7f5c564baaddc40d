// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.VirtualKeyboard 2.15
import QtQuick.VirtualKeyboard.Settings 2.15

/** The on-screen keyboard. It waits below the bottom edge until a text field needs it. */
InputPanel {
    id: root

    /// the page that the keyboard belongs to
    property Item page

    y: page.height
    width: page.width

    Component.onCompleted: {
        VirtualKeyboardSettings.locale = "de_DE";
        // Offer no other language: the next person would have to switch back.
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
