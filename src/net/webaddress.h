// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QUrl>

/** True for the only addresses that the program requests: http and https with a host. */
[[nodiscard]] inline bool isWebAddress(const QUrl &url)
{
    return !url.host().isEmpty()
        && (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"));
}
