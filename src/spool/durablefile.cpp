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

/** A full disk accepts part of the content without an error; only the next write fails. */
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

QString unfinishedName(const QString &path)
{
    const QFileInfo info(path);
    return info.path() + QLatin1String("/.") + info.fileName()
        + QLatin1String(DurableFile::unfinishedSuffix);
}

/** Renames a file unless the new name is taken; false with the reason in errno. */
bool renameNoReplace(const QByteArray &from, const QByteArray &to)
{
    if (renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL)
        return false;
    // Some file systems cannot do it at once. Check first: nobody else uses our names.
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

DurableFile::DurableFile(const QString &path)
    : m_path(path)
    , m_unfinished(std::make_unique<QFile>(unfinishedName(path)))
{
}

DurableFile::DurableFile(DurableFile &&other) noexcept = default;

DurableFile::~DurableFile()
{
    if (m_unfinished)
        m_unfinished->remove();
}

void DurableFile::write(const QByteArray &content)
{
    m_content = content;
    QFile &file = *m_unfinished;
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        fail("create", m_path, file.error(), file.errorString());
    const bool isWritten = file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
        && writeAll(file, content);
    if (!isWritten)
        fail("write to", m_path, file.error(), file.errorString());
    // A hint that may fail: the disk starts while the caller does something else.
    (void)sync_file_range(file.handle(), 0, 0, SYNC_FILE_RANGE_WRITE);
}

bool DurableFile::commitAs(const QString &path)
{
    sync(path);
    if (!renameNoReplace(QFile::encodeName(m_unfinished->fileName()), QFile::encodeName(path))) {
        if (errno == EEXIST)
            return false;
        failToWrite(path);
    }
    m_unfinished.reset();
    if (syncFolder(QFileInfo(path).path()))
        return true;
    const int code = errno;
    QFile::remove(path);
    errno = code;
    failToWrite(path);
}

void DurableFile::commitReplacing()
{
    sync(m_path);
    const QByteArray unfinished = QFile::encodeName(m_unfinished->fileName());
    if (rename(unfinished.constData(), QFile::encodeName(m_path).constData()) != 0)
        failToWrite(m_path);
    m_unfinished.reset();
    if (!syncFolder(QFileInfo(m_path).path()))
        failToWrite(m_path);
}

void DurableFile::sync(const QString &path)
{
    if (fsync(m_unfinished->handle()) != 0)
        failToWrite(path);
}

bool makeDurableFolder(const QString &folder)
{
    const QString parent = QFileInfo(folder).path();
    if (QFileInfo(folder).isDir())
        return true;
    return parent != folder && makeDurableFolder(parent) && QDir().mkpath(folder)
        && syncFolder(parent);
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
