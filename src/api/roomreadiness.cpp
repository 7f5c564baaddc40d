// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/roomreadiness.h"

#include "config/config.h"

using namespace std::chrono_literals;

RoomReadiness::RoomReadiness(QObject *parent)
    : QObject(parent)
    , m_patience(this)
{
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &RoomReadiness::warningChanged);
    connect(Config::instance(), &Config::configChanged, this, &RoomReadiness::warningChanged);
    m_patience.start(10s);
}

QString RoomReadiness::warning() const
{
    const Config *config = Config::instance();
    const bool needsRoom = config->initialItem() != QLatin1String("Default.qml");
    if (m_patience.isActive() || !needsRoom || config->plenarLocationId() > 0)
        return {};
    return config->hasCredentials()
        //: Small line at the bottom of the screen
        ? tr("This screen has not been given a room.")
        //: Small line at the bottom of the screen
        : tr("This screen has not been given a room, as its name or its secret is missing.");
}
