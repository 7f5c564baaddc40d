// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/plainhttp.h"

#include <QDebug>
#include <QHostAddress>
#include <QSet>
#include <QUrl>

bool isPlainHttpToOthers(const QUrl &url)
{
    if (url.scheme() != QLatin1String("http"))
        return false;
    const QString host = url.host();
    return host != QLatin1String("localhost") && !QHostAddress(host).isLoopback();
}

void warnOfPlainHttp(const QUrl &url)
{
    // Per thread, since nothing is shared without need; each thread has addresses of its own.
    thread_local QSet<QString> warned;
    const QString address = url.toDisplayString(QUrl::RemovePath | QUrl::RemoveQuery);
    if (!isPlainHttpToOthers(url) || warned.contains(address))
        return;
    warned.insert(address);
    qWarning() << "Tokens and records go over the network unprotected:" << address;
}
