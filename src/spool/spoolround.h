// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDirIterator>
#include <QString>

#include <optional>

/**
 * Goes once round the files of a spool, in the order of the file system, from the file after a
 * given one. Reads the names one by one, so that memory does not grow with the spool.
 */
class SpoolRound
{
public:
    /** Begins with the first file if @p startAfter is empty or gone. */
    SpoolRound(const QString &folder, const QString &startAfter);

    /** True once next() has no more files. */
    [[nodiscard]] bool isOver() const;
    /** Reads one more name. The path of the file; empty while the round looks for its start. */
    [[nodiscard]] QString next();

private:
    enum Stage { Searching, AfterStart, BeforeStart, Over };

    QString m_folder;
    QString m_startAfter;
    std::optional<QDirIterator> m_files;
    Stage m_stage;
};
