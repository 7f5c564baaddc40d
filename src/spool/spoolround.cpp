// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/spoolround.h"

#include "spool/spool.h"

SpoolRound::SpoolRound(const QString &folder, const QString &startAfter)
    : m_folder(folder)
    , m_startAfter(startAfter)
    , m_stage(startAfter.isEmpty() ? BeforeStart : Searching)
{
    m_files.emplace(folder, Spool::recordFilter);
}

bool SpoolRound::isOver() const
{
    return m_stage == Over;
}

QString SpoolRound::next()
{
    if (!m_files->hasNext()) {
        const bool isWhole = m_stage == BeforeStart;
        m_stage = isWhole ? Over : BeforeStart;
        m_files.emplace(m_folder, Spool::recordFilter);
        return {};
    }
    QString path = m_files->next();
    const bool isStart = path == m_startAfter;
    if (m_stage == Searching) {
        if (isStart)
            m_stage = AfterStart;
        return {};
    }
    if (isStart)
        m_stage = Over;
    return path;
}
