// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/accesstoken.h"

#include <QNetworkRequest>

#include <memory>

namespace accesstoken {

namespace {

    /** Global because all threads share it. Replaced as a whole, never modified. */
    std::shared_ptr<const QString> s_token;

} // namespace

void publish(const QString &token)
{
    std::atomic_store(&s_token, std::make_shared<const QString>(token));
}

QString current()
{
    const auto token = std::atomic_load(&s_token);
    return token ? *token : QString();
}

void setBearer(QNetworkRequest &request, const QString &token)
{
    request.setRawHeader(QByteArrayLiteral("Authorization"),
                         QStringLiteral("Bearer %1").arg(token).toLatin1());
}

bool authorize(QNetworkRequest &request)
{
    const QString token = current();
    if (token.isEmpty())
        return false;
    setBearer(request, token);
    return true;
}

} // namespace accesstoken
