// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDeadlineTimer>
#include <QHash>
#include <QString>

#include <chrono>
#include <optional>

/**
 * How long each record that failed in a pass must wait: 60 s after the first failure, twice as long
 * after each further one, 6 h at most. So a record that the service cannot digest leaves the passes
 * to the others. Kept in memory only: a restart tries every record at once.
 */
class RecordBackOff
{
public:
    [[nodiscard]] bool isDue(const QString &path) const;
    /** Call it when @p path has failed. */
    void postpone(const QString &path);
    /** Call it when @p path has been accepted. */
    void forget(const QString &path);
    /** Call it when @p path is not a valid record: it waits as long as possible at once. */
    void shelve(const QString &path);
    /** Makes all records due. */
    void clear();
    /** Forgets files that were removed by somebody else. */
    void forgetGone();
    /** Time until the next record is due; nothing if none waits. */
    [[nodiscard]] std::optional<std::chrono::milliseconds> untilNextDue() const;

private:
    struct Wait
    {
        std::chrono::seconds length;
        QDeadlineTimer end;
    };

    void wait(const QString &path, std::chrono::seconds length);

    QHash<QString, Wait> m_waits; ///< by path
};
