// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/fileidentity.h"

#include <QByteArray>

/**
 * The file of the local time zone, which an administrator or an update may replace.
 *
 * With the file in TZ, as ":/etc/localtime", the C library does not look at it again for every
 * local time, but it never reads a new one either. Knows no file, and never changes anything, if TZ
 * names a zone instead.
 */
class ZoneFile
{
public:
    /** Takes the file from TZ. */
    ZoneFile();

    /**
     * If the file was replaced since the last call, makes all threads use the new zone and returns
     * true. A file that is missing leaves the zone as it is.
     */
    [[nodiscard]] bool reloadIfReplaced();

private:
    QByteArray m_path; ///< empty if TZ names no file
    FileIdentity m_identity;
    bool m_isRespelt = false;
};
