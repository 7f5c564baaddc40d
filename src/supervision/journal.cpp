// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "supervision/journal.h"

#include <QList>
#include <QLoggingCategory>

#include <sys/stat.h>
#include <unistd.h>

namespace {

/** True if JOURNAL_STREAM names the file behind standard error, by device and inode. */
bool logsToJournal()
{
    struct stat error
    {
    };
    const QList<QByteArray> stream = qgetenv("JOURNAL_STREAM").split(':');
    return stream.size() == 2 && fstat(STDERR_FILENO, &error) == 0
        && stream.at(0).toULongLong() == error.st_dev && stream.at(1).toULongLong() == error.st_ino;
}

} // namespace

void prepareJournal()
{
    if (!logsToJournal())
        return;
    qSetMessagePattern(
        QStringLiteral("%{if-debug}<7>%{endif}%{if-info}<6>%{endif}%{if-warning}<4>%{endif}"
                       "%{if-critical}<3>%{endif}%{if-fatal}<2>%{endif}"
                       "%{if-category}%{category}: %{endif}%{message}"));
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
}
