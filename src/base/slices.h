// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

class QObject;

/**
 * Calls @p step until it returns false, then @p done, in slices of a few milliseconds between which
 * @p context's thread handles its events. The first slice runs at once; the rest ends with
 * @p context, in whose thread it has to be called.
 */
void runInSlices(QObject *context, const std::function<bool()> &step,
                 const std::function<void()> &done);
