// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class Notification;

/**
 * A notification of random kind, texts, countdown and buttons, for a technician who wants to see
 * whether the screen shows them. The caller takes it over.
 */
[[nodiscard]] Notification *makeTestNotification();
