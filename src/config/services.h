// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QUrl>
#include <QVector>

class Config;

/** A service that receives tokens or records. The schedule service receives neither. */
struct Service
{
    enum class Kind { Token, Configuration, Records };

    Kind kind;
    QString name; ///< for an operator
    QUrl url;
    bool isUsed; ///< by the settings now in force
};

/** All services with the addresses now in force. */
[[nodiscard]] QVector<Service> services(const Config &config);
