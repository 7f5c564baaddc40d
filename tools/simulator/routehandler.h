// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/answer.h"
#include "simulator/recordedrequest.h"

namespace simulator {

/**
 * One service: knows its paths, checks requests as strictly as the real one and makes the answers.
 * All functions are called from several threads at once; an implementation guards what it changes.
 */
class RouteHandler
{
public:
    RouteHandler() = default;
    Q_DISABLE_COPY_MOVE(RouteHandler)
    virtual ~RouteHandler() = default;

    /// Whether such requests go to this service, be they good or bad.
    [[nodiscard]] virtual bool owns(const QByteArray &method, const QString &path) const = 0;
    /// The good answer, or the refusal of a request that the real service would refuse.
    /// @param path what was asked for, which differs from the request's own after a redirect
    [[nodiscard]] virtual Answer answer(const QString &path, const RecordedRequest &request) = 0;
    /// What becomes of the good answer under a fault that depends on the service's own document;
    /// a fault that the service has no idea of changes nothing.
    [[nodiscard]] virtual Answer spoil(Answer good, Fault fault, const RecordedRequest &request)
        = 0;
};

} // namespace simulator
