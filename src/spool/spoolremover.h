// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>

#include <optional>

/**
 * Removes records that have done their part. A removal that a power cut undid would send a record
 * twice, so the folder is synced: at once for a record whose person is told that it is done, within
 * half a second for those of a pass, where one sync serves many. A sync that fails is tried again
 * with the next.
 */
class SpoolRemover : public QObject
{
    Q_OBJECT

public:
    enum class Sync { AtOnce, Soon };

    explicit SpoolRemover(QObject *parent = nullptr);
    /** Syncs what is left to. */
    ~SpoolRemover() override;

    /**
     * Removes @p path if it exists. Returns path, error code and reason of a failure. "At once" is
     * with the next turn of the event loop: what the person sees does not wait for the disk.
     */
    [[nodiscard]] std::optional<QString> remove(const QString &path, Sync when);

private:
    void sync();

    QTimer m_timer;
    QSet<QString> m_unsyncedFolders;
};
