// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDir>

#include <csignal>
#include <sys/resource.h>

/** While it lives, no file of this process grows beyond @p bytes, like on a full disk. */
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_kept);
        const rlimit tight { bytes, m_kept.rlim_max };
        setrlimit(RLIMIT_FSIZE, &tight);
    }
    Q_DISABLE_COPY_MOVE(FullDisk)
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_kept); }

private:
    rlimit m_kept {};
};

/** Replaces the one file in @p folder by a folder, which cannot be removed; returns its path. */
inline QString blockRemoval(const QString &folder)
{
    const QDir dir(folder);
    const QString path = dir.filePath(dir.entryList(QDir::Files).value(0));
    return QFile::remove(path) && dir.mkpath(path) ? path : QString();
}
