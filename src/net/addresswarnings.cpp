// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/addresswarnings.h"

#include "config/config.h"
#include "config/services.h"
#include "net/webaddress.h"

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

/** Logs it once for each address and process. */
void warn(const char *problem, const QString &address)
{
    static QSet<QString> warned;
    if (warned.contains(address))
        return;
    warned.insert(address);
    qWarning() << problem << address;
}

} // namespace

void warnOfAddresses()
{
    for (const Service &service : services(*Config::instance())) {
        if (!service.isUsed)
            continue;
        const QUrl &url = service.url;
        if (!isWebAddress(url))
            warn("Refusing an address that is not http or https:",
                 url.toDisplayString(QUrl::RemoveUserInfo | QUrl::RemoveQuery).left(200));
        else if (service.takesSecrets() && isPlainHttpToOthers(url))
            warn("Tokens and records go over the network unprotected:",
                 url.toDisplayString(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery));
    }
}
