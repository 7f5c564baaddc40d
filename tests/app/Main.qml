// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0

/** Stands in for the interface: shows that it is there, and what it finds. */
Item {
    property string token: LBAPI.accessToken
    property int notices: LBAPI.notifications.length
}
