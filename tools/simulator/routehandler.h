// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/recordedrequest.h"
#include "simulator/response.h"

namespace simulator {

/**
 * One service: knows its paths, checks requests as strictly as the real one and makes the
 * responses. Several threads call the functions at once, so an implementation locks what it
 * changes.
 */
class RouteHandler
{
public:
    RouteHandler() = default;
    Q_DISABLE_COPY_MOVE(RouteHandler)
    virtual ~RouteHandler() = default;

    /// Whether such requests go to this service, valid or not.
    [[nodiscard]] virtual bool owns(const QByteArray &method, const QString &path) const = 0;
    /// The good response, or the refusal of a request that the real service would refuse.
    /// @param path the requested path; differs from the request's own after a redirect
    [[nodiscard]] virtual Response respond(const QString &path, const RecordedRequest &request) = 0;
    /// Applies a fault that depends on the service's own document to a good response. Returns it
    /// unchanged if the service does not know the fault.
    [[nodiscard]] virtual Response spoil(Response good, Fault fault, const RecordedRequest &request)
        = 0;
};

} // namespace simulator
