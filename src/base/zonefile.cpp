// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/zonefile.h"

#include <QFile>

ZoneFile::ZoneFile()
{
    const QByteArray zone = qgetenv("TZ");
    if (!zone.startsWith(":/"))
        return;
    m_path = zone.mid(1);
    m_identity = fileIdentity(QFile::decodeName(m_path));
}

bool ZoneFile::reloadIfReplaced()
{
    const FileIdentity identity = fileIdentity(QFile::decodeName(m_path));
    if (identity == m_identity || identity == FileIdentity())
        return false;
    m_identity = identity;
    // The C library reads a file only if TZ is a different text. "//" leads to the same file. Qt
    // guards TZ against its own conversions in other threads.
    m_isRespelt = !m_isRespelt;
    qputenv("TZ", (m_isRespelt ? ":/" : ":") + m_path);
    return true;
}
