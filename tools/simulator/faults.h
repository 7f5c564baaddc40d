// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/response.h"

namespace simulator {

class RouteHandler;
struct RecordedRequest;

/// Whether the request still reaches the service, so that the fault spoils the response only.
[[nodiscard]] bool letsRequestsThrough(Fault fault);

/**
 * Applies a fault to a good response. Hang and Slow change only the time of a response, and Refuse
 * sends none: these three return it as it is.
 * @param newLocation the target of redirects
 */
[[nodiscard]] Response spoiled(Response response, Fault fault, RouteHandler &handler,
                               const QByteArray &newLocation, const RecordedRequest &request);

} // namespace simulator
