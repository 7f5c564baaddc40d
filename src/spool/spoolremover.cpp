// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/spoolremover.h"

#include "spool/disk.h"
#include "spool/spool.h"

#include <QDebug>
#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

SpoolRemover::SpoolRemover(QObject *parent)
    : QObject(parent)
    , m_timer(this)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &SpoolRemover::sync);
}

SpoolRemover::~SpoolRemover()
{
    sync();
}

std::optional<Failure> SpoolRemover::remove(const QString &path, Sync when)
{
    auto failure = Spool::remove(path);
    if (!failure) {
        m_unsyncedFolders.insert(QFileInfo(path).path());
        if (when == Sync::AtOnce)
            m_timer.start(0ms);
        else if (!m_timer.isActive())
            m_timer.start(500ms);
    }
    return failure;
}

void SpoolRemover::sync()
{
    const auto folders = std::exchange(m_unsyncedFolders, {});
    for (const QString &folder : folders) {
        if (Disk::instance().syncFolder(folder))
            continue;
        qWarning() << "Failed to sync" << folder << qt_error_string(errno);
        m_unsyncedFolders.insert(folder);
    }
}
