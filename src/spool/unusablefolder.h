// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

/**
 * What a run of the program leaves for the next one when a folder of records ends it: the next one
 * must look at that folder before it takes a card, or it would end at every card. Kept until the
 * machine restarts. Any thread.
 */
namespace unusablefolder {

void remember(const QString &folder);
[[nodiscard]] bool isRemembered(const QString &folder);
void forget(const QString &folder);

} // namespace unusablefolder
