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
 * twice, so the folder is synced within half a second; one sync serves many removals.
 */
class SpoolRemover : public QObject
{
    Q_OBJECT

public:
    explicit SpoolRemover(QObject *parent = nullptr);
    /** Syncs what is left to. */
    ~SpoolRemover() override;

    /** Removes @p path if it exists. Returns path, error code and reason of a failure. */
    [[nodiscard]] std::optional<QString> remove(const QString &path);

private:
    void sync();

    QTimer m_timer;
    QSet<QString> m_unsyncedFolders;
};
