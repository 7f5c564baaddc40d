// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtQuick.Controls 2.15

/** A label that wraps its text and shows it as it is, never as markup. */
Label {
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
}
