// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/durablefile.h"

#include "base/exceptions.h"
#include "base/reason.h"
#include "spool/disk.h"

#include <QFileDevice>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace {

/** Throws the reason in errno, with the code that QFile uses. */
[[noreturn]] void fail(const char *what, const QString &path, QFileDevice::FileError code)
{
    const int error = errno; // building texts may change it
    throw AttendanceErrorException(
        QStringLiteral("failed to %1 file \"%2\": %3 %4")
            .arg(QLatin1String(what), path, QString::number(code), qt_error_string(error)),
        Reason::ofDisk(error));
}

[[noreturn]] void failToWrite(const QString &path)
{
    fail("write to", path, QFileDevice::WriteError);
}

/** A full disk accepts part of the content without an error; only the next write fails. */
bool writeAll(int descriptor, const QByteArray &content)
{
    int done = 0;
    while (done < content.size()) {
        const auto left = static_cast<size_t>(content.size() - done);
        const ssize_t count = Disk::instance().write(descriptor, content.constData() + done, left);
        if (count < 0 && errno == EINTR)
            continue;
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
bool renameNoReplace(const QString &from, const QString &to)
{
    if (Disk::instance().rename(from, to, RENAME_NOREPLACE))
        return true;
    if (errno != EINVAL)
        return false;
    // Some file systems cannot do it at once. Check first: nobody else uses our names.
    const QFileInfo taken(to);
    if (taken.exists() || taken.isSymLink()) {
        errno = EEXIST;
        return false;
    }
    return Disk::instance().rename(from, to);
}

} // namespace

DurableFile::DurableFile(const QString &path)
    : m_path(path)
    , m_unfinished(unfinishedName(path))
{
}

DurableFile::DurableFile(DurableFile &&other) noexcept
    : m_path(std::move(other.m_path))
    , m_content(std::move(other.m_content))
    , m_unfinished(std::exchange(other.m_unfinished, {}))
    , m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_isSynced(other.m_isSynced)
{
}

DurableFile::~DurableFile()
{
    if (m_descriptor < 0)
        return;
    close(m_descriptor);
    if (!m_unfinished.isEmpty())
        (void)Disk::instance().unlink(m_unfinished); // else the next start removes it
}

void DurableFile::write(const QByteArray &content)
{
    m_content = content;
    m_descriptor = Disk::instance().create(m_unfinished);
    if (m_descriptor < 0)
        fail("create", m_path,
             errno == EMFILE ? QFileDevice::ResourceError : QFileDevice::OpenError);
    if (!writeAll(m_descriptor, content))
        failToWrite(m_path);
    // A hint that may fail: the disk starts while the caller does something else.
    (void)sync_file_range(m_descriptor, 0, 0, SYNC_FILE_RANGE_WRITE);
}

bool DurableFile::commitAs(const QString &path)
{
    sync(path);
    if (!renameNoReplace(m_unfinished, path)) {
        if (errno == EEXIST)
            return false;
        failToWrite(path);
    }
    m_unfinished.clear();
    if (Disk::instance().syncFolder(QFileInfo(path).path()))
        return true;
    const int code = errno;
    (void)Disk::instance().unlink(path); // the caller takes it for lost
    errno = code;
    failToWrite(path);
}

void DurableFile::commitReplacing()
{
    sync(m_path);
    if (!Disk::instance().rename(m_unfinished, m_path))
        failToWrite(m_path);
    m_unfinished.clear();
    if (!Disk::instance().syncFolder(QFileInfo(m_path).path()))
        failToWrite(m_path);
}

/** Makes the content durable, once, however many names are tried. */
void DurableFile::sync(const QString &path)
{
    if (!m_isSynced && !Disk::instance().sync(m_descriptor))
        failToWrite(path);
    m_isSynced = true;
}

bool makeDurableFolder(const QString &folder)
{
    const QString parent = QFileInfo(folder).path();
    if (QFileInfo(folder).isDir())
        return true;
    return parent != folder && makeDurableFolder(parent) && Disk::instance().makeFolder(folder)
        && Disk::instance().syncFolder(parent);
}
