// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QUrl>
#include <QVector>

class Config;

/** A web service that the screen uses. */
struct Service
{
    enum class Kind { Schedule, Token, Configuration, Records };

    Kind kind;
    QString name; ///< for an operator
    QUrl url;
    bool isUsed; ///< by the settings now in force

    /** True if it receives tokens or records. */
    [[nodiscard]] bool takesSecrets() const { return kind != Kind::Schedule; }
};

/** All services with the addresses now in force. */
[[nodiscard]] QVector<Service> services(const Config &config);
