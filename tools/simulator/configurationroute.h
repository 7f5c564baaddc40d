// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/routehandler.h"

#include <mutex>

namespace simulator {

class TokenRoute;

/** The configuration service: one document for whoever holds a token. */
class ConfigurationRoute : public RouteHandler
{
public:
    static constexpr auto path = "/lumenboards/api/config/";

    /// @param tokens knows which tokens are good
    explicit ConfigurationRoute(const TokenRoute &tokens);

    /// Serves this JSON; empty goes back to the configuration of the sample day's first room.
    void setDocument(const QByteArray &json);

    [[nodiscard]] bool owns(const QByteArray &method, const QString &path) const override;
    [[nodiscard]] Answer answer(const QString &path, const RecordedRequest &request) override;
    [[nodiscard]] Answer spoil(Answer good, Fault fault, const RecordedRequest &request) override;

private:
    const TokenRoute &m_tokens;
    std::mutex m_mutex; ///< guards everything below
    QByteArray m_document;
};

} // namespace simulator
