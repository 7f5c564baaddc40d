// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/plainhttp.h"

#include "config/config.h"
#include "config/services.h"

#include <QDebug>
#include <QHostAddress>
#include <QSet>
#include <QUrl>

namespace {

/** True if others can read what is sent to @p url: plain http to another machine. */
bool isPlainHttpToOthers(const QUrl &url)
{
    if (url.scheme() != QLatin1String("http"))
        return false;
    const QString host = url.host();
    return host != QLatin1String("localhost") && !QHostAddress(host).isLoopback();
}

} // namespace

void warnOfPlainHttp()
{
    static QSet<QString> warned;
    for (const Service &service : services(*Config::instance())) {
        const QString address = service.url.toDisplayString(QUrl::RemoveUserInfo | QUrl::RemovePath
                                                            | QUrl::RemoveQuery);
        if (!service.isUsed || !isPlainHttpToOthers(service.url) || warned.contains(address))
            continue;
        warned.insert(address);
        qWarning() << "Tokens and records go over the network unprotected:" << address;
    }
}
