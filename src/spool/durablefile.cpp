// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/durablefile.h"

#include "app/exceptions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
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

    void fill(QFile &file, const QString &path, const QByteArray &content)
    {
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
            fail("create", path, file.error(), file.errorString());
        const bool written = file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
            && writeAll(file, content);
        if (!written)
            fail("write to", path, file.error(), file.errorString());
        if (fsync(file.handle()) != 0)
            failToWrite(path);
    }

} // namespace

void write(const QString &path, const QByteArray &content)
{
    const QFileInfo info(path);
    const QString folder = info.path();
    const bool isNew = !info.exists();
    QFile unfinished(folder + QLatin1String("/.") + info.fileName()
                     + QLatin1String(unfinishedEnding));
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
    if (syncFolder(folder))
        return;
    const int code = errno;
    if (isNew)
        QFile::remove(path);
    errno = code;
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
