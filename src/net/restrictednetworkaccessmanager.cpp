// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/restrictednetworkaccessmanager.h"

#include "config/config.h"
#include "net/checkedimagereply.h"
#include "net/http.h"

#include <QCoreApplication>
#include <QDebug>
#include <QNetworkReply>
#include <QThread>

RestrictedNetworkAccessManager::RestrictedNetworkAccessManager(const RequestLimits &limits,
                                                               QObject *parent)
    : XNetworkAccessManager(parent)
    , m_limits(limits)
{
}

QNetworkReply *RestrictedNetworkAccessManager::createRequest(Operation op,
                                                             const QNetworkRequest &request,
                                                             QIODevice *outgoingData)
{
    QNetworkRequest restricted(request);
    if (!isAllowed(request.url())) {
        qWarning() << "Refusing request of the user interface for"
                   << request.url().toDisplayString(QUrl::RemoveQuery).left(200);
        // Qt knows no such scheme, so the request ends with an ordinary "protocol unknown" error.
        restricted.setUrl(QUrl(QStringLiteral("refused:")));
        return XNetworkAccessManager::createRequest(op, restricted, outgoingData);
    }

    // With no redirect left to follow Qt itself fails the request; under the manual policy QML
    // would read the target from the reply and follow it.
    restricted.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                            QNetworkRequest::NoLessSafeRedirectPolicy);
    restricted.setMaximumRedirectsAllowed(0);
    QNetworkReply *reply = http::send(restricted, m_limits, [&](const QNetworkRequest &limited) {
        return XNetworkAccessManager::createRequest(op, limited, outgoingData);
    });
    // Only QML's image readers have managers in other threads.
    const bool isForImage = thread() != QCoreApplication::instance()->thread();
    return isForImage ? new CheckedImageReply(reply, this) : reply;
}

bool RestrictedNetworkAccessManager::isAllowed(const QUrl &url) const
{
    const QString scheme = url.scheme();
    if (scheme == QLatin1String("data"))
        return url.toEncoded().size() <= m_limits.maxBodyBytes;
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https"))
        return false;
    const QUrl service = Config::instance()->quirlUrl();
    return !url.host().isEmpty() && url.host() == service.host();
}

RestrictedNetworkAccessManagerFactory::RestrictedNetworkAccessManagerFactory(
    const RequestLimits &limits)
    : m_limits(limits)
{
}

QNetworkAccessManager *RestrictedNetworkAccessManagerFactory::create(QObject *parent)
{
    return new RestrictedNetworkAccessManager(m_limits, parent);
}
