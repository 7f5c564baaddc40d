// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/**
 * If standard error leads to systemd's journal, gives each line the priority of its message type
 * (sd-daemon(3)) and leaves debug messages out. QT_MESSAGE_PATTERN and QT_LOGGING_RULES override
 * each. Call it before the first message.
 */
void prepareJournal();
