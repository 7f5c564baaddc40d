// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0

/** Replaces the interface and exposes what it reads from LBAPI. */
Item {
    property string token: LBAPI.accessToken
    property int notices: LBAPI.notifications.length
}
