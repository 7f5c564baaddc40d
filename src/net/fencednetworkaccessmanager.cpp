// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/fencednetworkaccessmanager.h"

#include "config/config.h"
#include "net/http.h"

#include <QDebug>
#include <QNetworkReply>

FencedNetworkAccessManager::FencedNetworkAccessManager(const RequestLimits &limits, QObject *parent)
    : XNetworkAccessManager(parent)
    , m_limits(limits)
{
}

QNetworkReply *FencedNetworkAccessManager::createRequest(Operation op,
                                                         const QNetworkRequest &request,
                                                         QIODevice *outgoingData)
{
    QNetworkRequest fenced(request);
    if (!isAllowed(request.url())) {
        qWarning() << "Refusing request of the user interface for"
                   << request.url().toDisplayString(QUrl::RemoveQuery).left(200);
        // A scheme that nobody serves: the request ends with "protocol unknown" in the usual way.
        fenced.setUrl(QUrl(QStringLiteral("refused:")));
        return XNetworkAccessManager::createRequest(op, fenced, outgoingData);
    }

    // With no redirect left to follow Qt itself fails the request; under the manual policy QML
    // would read the target from the reply and follow it.
    fenced.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        QNetworkRequest::NoLessSafeRedirectPolicy);
    fenced.setMaximumRedirectsAllowed(0);
    return http::send(fenced, m_limits, [&](const QNetworkRequest &limited) {
        return XNetworkAccessManager::createRequest(op, limited, outgoingData);
    });
}

bool FencedNetworkAccessManager::isAllowed(const QUrl &url) const
{
    const QString scheme = url.scheme();
    if (scheme == QLatin1String("data"))
        return url.toEncoded().size() <= m_limits.maxBodyBytes;
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https"))
        return false;
    const QUrl service = Config::instance()->quirlUrl();
    return !url.host().isEmpty() && url.host() == service.host();
}

FencedNetworkAccessManagerFactory::FencedNetworkAccessManagerFactory(const RequestLimits &limits)
    : m_limits(limits)
{
}

QNetworkAccessManager *FencedNetworkAccessManagerFactory::create(QObject *parent)
{
    return new FencedNetworkAccessManager(m_limits, parent);
}
