// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/services.h"

#include "config/config.h"

QVector<Service> services(const Config &config)
{
    using Kind = Service::Kind;
    return {
        { Kind::Schedule, QStringLiteral("schedule"), config.eventDataUrl(config.scheduleDate()),
          true },
        { Kind::Token, QStringLiteral("token"), config.keycloakUrl(), true },
        { Kind::Configuration, QStringLiteral("configuration"), config.quirlUrl(), true },
        { Kind::Records, QStringLiteral("attendance"), config.attendanceLogUrl(),
          config.attendanceEnabled() },
        { Kind::Records, QStringLiteral("presence"), config.tallyxLogUrl(),
          config.tallyxMode() != Config::TallyxDisabled },
    };
}
