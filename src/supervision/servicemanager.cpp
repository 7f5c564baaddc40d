// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "supervision/servicemanager.h"

#include <QDebug>

#include <cstring>
#include <systemd/sd-daemon.h>

namespace {

void notify(const QByteArray &state)
{
    const int result = sd_notify(0, state.constData());
    if (result < 0)
        qWarning() << "Failed to tell the service manager" << state << std::strerror(-result);
}

} // namespace

void servicemanager::ready()
{
    notify("READY=1");
}

void servicemanager::status(const QString &text)
{
    notify("STATUS=" + text.simplified().toUtf8());
}

void servicemanager::stopping()
{
    notify("STOPPING=1\nSTATUS=Ending.");
}

void servicemanager::alive()
{
    notify("WATCHDOG=1");
}

std::optional<std::chrono::milliseconds> servicemanager::lifeSignLimit()
{
    uint64_t microseconds = 0;
    const int result = sd_watchdog_enabled(0, &microseconds);
    if (result < 0)
        qWarning() << "The service manager's watchdog is not understood:" << std::strerror(-result);
    if (result <= 0)
        return {};
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::microseconds(microseconds));
}
