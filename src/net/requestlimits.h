// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

#include <chrono>

/** Limits beyond which a request is aborted. */
struct RequestLimits
{
    std::chrono::milliseconds transferTimeout = std::chrono::seconds(30); ///< without any byte
    std::chrono::milliseconds deadline = std::chrono::seconds(60); ///< for the request as a whole
    qint64 maxBodyBytes = 1024 * 1024; ///< of the response
};
