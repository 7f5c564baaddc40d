// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/tokenintrospection.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <httplib.h>
#include <utility>

namespace simulator {

namespace {

    constexpr auto timeout = std::chrono::seconds(5);

} // namespace

TokenIntrospection::TokenIntrospection(QUrl endpoint)
    : m_endpoint(std::move(endpoint))
{
}

bool TokenIntrospection::isActive(const QByteArray &token) const
{
    const QUrl::FormattingOptions hostOnly = QUrl::RemoveUserInfo | QUrl::RemovePath;
    httplib::Client client(m_endpoint.toString(hostOnly).toStdString());
    client.set_basic_auth(m_endpoint.userName().toStdString(), m_endpoint.password().toStdString());
    client.set_connection_timeout(timeout);
    client.set_read_timeout(timeout);
    const auto result = client.Post(m_endpoint.path().toStdString(),
                                    httplib::Params { { "token", token.toStdString() } });
    return result
        && QJsonDocument::fromJson(QByteArray::fromStdString(result->body))
               .object()
               .value(QLatin1String("active"))
               .toBool();
}

} // namespace simulator
