// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/slices.h"

#include <QElapsedTimer>
#include <QObject>

void runInSlices(QObject *context, const std::function<bool()> &step,
                 const std::function<void()> &done)
{
    constexpr qint64 sliceMs = 5;
    constexpr int stepsPerLook = 64; // reading the clock may take longer than a step

    QElapsedTimer timer;
    timer.start();
    do {
        for (int i = 0; i < stepsPerLook; ++i) {
            if (step())
                continue;
            done();
            return;
        }
    } while (!timer.hasExpired(sliceMs));
    QMetaObject::invokeMethod(
        context, [context, step, done] { runInSlices(context, step, done); }, Qt::QueuedConnection);
}
