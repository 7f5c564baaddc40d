// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class Notification;

/**
 * A notification with random type, texts, countdown and buttons, for a technician who checks the
 * screen. The caller owns it.
 */
[[nodiscard]] Notification *makeTestNotification();
