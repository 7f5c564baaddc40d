// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/durablefile.h"

#include "base/exceptions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace durablefile {

namespace {

    [[noreturn]] void fail(const char *what, const QString &path, int code, const QString &text)
    {
        throw AttendanceErrorException(
            QStringLiteral("failed to %1 file \"%2\": %3 %4")
                .arg(QLatin1String(what), path, QString::number(code), text));
    }

    [[noreturn]] void failToWrite(const QString &path)
    {
        fail("write to", path, QFileDevice::WriteError, qt_error_string(errno));
    }

    /** A full disk takes part of it without an error, and only the rest fails. */
    bool writeAll(QFile &file, const QByteArray &content)
    {
        int done = 0;
        while (done < content.size()) {
            const qint64 count = file.write(content.constData() + done, content.size() - done);
            if (count <= 0)
                return false;
            done += static_cast<int>(count);
        }
        return true;
    }

    void fill(QFile &file, const QString &path, const QByteArray &content,
              const std::function<void()> &beforeSync = {})
    {
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
            fail("create", path, file.error(), file.errorString());
        const bool written = file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
            && writeAll(file, content);
        if (!written)
            fail("write to", path, file.error(), file.errorString());
        // A hint that may fail: the disk begins at once, so that the call takes none of its time.
        (void)sync_file_range(file.handle(), 0, 0, SYNC_FILE_RANGE_WRITE);
        if (beforeSync)
            beforeSync();
        if (fsync(file.handle()) != 0)
            failToWrite(path);
    }

    QString unfinishedName(const QString &path)
    {
        const QFileInfo info(path);
        return info.path() + QLatin1String("/.") + info.fileName()
            + QLatin1String(unfinishedEnding);
    }

    /** Gives a file its name, unless that is taken; false with the reason in errno. */
    bool renameToFree(const QByteArray &from, const QByteArray &to)
    {
        if (renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
            return true;
        if (errno != EINVAL)
            return false;
        // A file system that can not do it at once. Nobody else gives names of ours.
        struct stat info
        {
        };
        if (lstat(to.constData(), &info) == 0) {
            errno = EEXIST;
            return false;
        }
        return rename(from.constData(), to.constData()) == 0;
    }

} // namespace

bool create(const QString &path, const QByteArray &content, const std::function<void()> &beforeSync)
{
    QFile unfinished(unfinishedName(path));
    bool isNamed = false;
    try {
        fill(unfinished, path, content, beforeSync);
        isNamed = renameToFree(QFile::encodeName(unfinished.fileName()), QFile::encodeName(path));
        if (!isNamed && errno != EEXIST)
            failToWrite(path);
    } catch (const AttendanceErrorException &) {
        unfinished.remove();
        throw;
    }
    if (!isNamed) {
        unfinished.remove();
        return false;
    }
    if (syncFolder(QFileInfo(path).path()))
        return true;
    const int code = errno;
    QFile::remove(path);
    errno = code;
    failToWrite(path);
}

void replace(const QString &path, const QByteArray &content)
{
    QFile unfinished(unfinishedName(path));
    try {
        fill(unfinished, path, content);
        if (rename(QFile::encodeName(unfinished.fileName()).constData(),
                   QFile::encodeName(path).constData())
            != 0)
            failToWrite(path);
    } catch (const AttendanceErrorException &) {
        unfinished.remove();
        throw;
    }
    if (!syncFolder(QFileInfo(path).path()))
        failToWrite(path);
}

bool makeFolder(const QString &folder)
{
    const QString parent = QFileInfo(folder).path();
    if (QFileInfo(folder).isDir())
        return true;
    return parent != folder && makeFolder(parent) && QDir().mkpath(folder) && syncFolder(parent);
}

bool syncFolder(const QString &folder)
{
    const int descriptor
        = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool done = fsync(descriptor) == 0;
    const int code = errno;
    close(descriptor);
    errno = code;
    return done;
}

} // namespace durablefile
