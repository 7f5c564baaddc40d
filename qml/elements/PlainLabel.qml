// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15

/** A label in the style's font and colours that shows its text as it is, never as markup. */
Label {
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
}
