// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/disk.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

Disk *installed = nullptr; // process-wide: a test reaches the spools that other classes own

} // namespace

Disk &Disk::instance()
{
    static Disk real;
    return installed ? *installed : real;
}

void Disk::install(Disk *disk)
{
    installed = disk;
}

int Disk::create(const QString &path)
{
    return open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC,
                S_IRUSR | S_IWUSR);
}

ssize_t Disk::write(int descriptor, const char *data, size_t size)
{
    return ::write(descriptor, data, size);
}

bool Disk::sync(int descriptor)
{
    return fsync(descriptor) == 0;
}

bool Disk::rename(const QString &from, const QString &to, unsigned flags)
{
    return renameat2(AT_FDCWD, QFile::encodeName(from).constData(), AT_FDCWD,
                     QFile::encodeName(to).constData(), flags)
        == 0;
}

bool Disk::syncFolder(const QString &folder)
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

bool Disk::unlink(const QString &path)
{
    return ::unlink(QFile::encodeName(path).constData()) == 0;
}

bool Disk::makeFolder(const QString &path)
{
    return mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0;
}
