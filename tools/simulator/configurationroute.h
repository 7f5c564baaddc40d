// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

#include <mutex>

namespace simulator {

class TokenRoute;

/** The configuration service: serves one document to every client with a token. */
class ConfigurationRoute : public RouteHandler
{
public:
    static constexpr auto path = "/lumenboards/api/config/";

    /// @param tokens checks the tokens
    explicit ConfigurationRoute(const TokenRoute &tokens);

    /// Serves this JSON. Empty restores the configuration for the sample day's first room.
    void setDocument(const QByteArray &json);

    [[nodiscard]] bool owns(const QByteArray &method, const QString &path) const override;
    [[nodiscard]] Response respond(const QString &path, const RecordedRequest &request) override;
    [[nodiscard]] Response spoil(Response good, Fault fault,
                                 const RecordedRequest &request) override;

private:
    const TokenRoute &m_tokens;
    std::mutex m_mutex; ///< protects m_document
    QByteArray m_document;
};

} // namespace simulator
