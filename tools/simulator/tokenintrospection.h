// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QUrl>

namespace simulator {

/** Asks a real identity server whether a token is valid (RFC 7662). For any thread; blocks it. */
class TokenIntrospection
{
public:
    /// @param endpoint with the name and the secret of a service that may ask
    explicit TokenIntrospection(QUrl endpoint);

    /// False also if the server does not answer within a few seconds.
    [[nodiscard]] bool isActive(const QByteArray &token) const;

private:
    QUrl m_endpoint;
};

} // namespace simulator
