// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/failure.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>

#include <optional>

/**
 * Removes records that must not be sent again, and syncs their folder: a power cut could otherwise
 * undo a removal, and the record would be sent twice. The sync follows at once when a person sees
 * the result, and within half a second in a pass, where one sync serves many removals. A failed
 * sync is repeated with the next one.
 */
class SpoolRemover : public QObject
{
    Q_OBJECT

public:
    enum class Sync { AtOnce, Soon };

    explicit SpoolRemover(QObject *parent = nullptr);
    /** Syncs the folders that still wait for it. */
    ~SpoolRemover() override;

    /**
     * Removes @p path if it exists, like Spool::remove(). "At once" means in the next turn of the
     * event loop, so that the screen does not wait for the disk.
     */
    [[nodiscard]] std::optional<Failure> remove(const QString &path, Sync when);

private:
    void sync();

    QTimer m_timer;
    QSet<QString> m_unsyncedFolders;
};
