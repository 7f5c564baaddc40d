// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/plainhttp.h"

#include "config/config.h"

#include <QDebug>
#include <QHostAddress>
#include <QSet>
#include <QUrl>
#include <QVector>

bool isPlainHttpToOthers(const QUrl &url)
{
    if (url.scheme() != QLatin1String("http"))
        return false;
    const QString host = url.host();
    return host != QLatin1String("localhost") && !QHostAddress(host).isLoopback();
}

void warnOfPlainHttp()
{
    static QSet<QString> warned;
    const Config *config = Config::instance();
    QVector<QUrl> urls { QUrl(config->keycloakUrl()), config->quirlUrl() };
    if (config->attendanceEnabled())
        urls.append(config->attendanceLogUrl());
    if (config->tallyxMode() != Config::TallyxDisabled)
        urls.append(config->tallyxLogUrl());
    for (const QUrl &url : qAsConst(urls)) {
        const QString address
            = url.toDisplayString(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery);
        if (!isPlainHttpToOthers(url) || warned.contains(address))
            continue;
        warned.insert(address);
        qWarning() << "Tokens and records go over the network unprotected:" << address;
    }
}
