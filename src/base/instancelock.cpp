// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/instancelock.h"

#include "base/runtimefolder.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

/**
 * A lock of the open file: unlike one of the process it does not end when some other code closes
 * the same file, and unlike that of flock() one can look at it without taking it.
 */
struct flock wholeFile()
{
    struct flock lock
    {
    };
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

/** For people and for holder(): the kernel does not tell whose a lock of an open file is. */
void writeProcessId(int descriptor)
{
    const QByteArray id = QByteArray::number(static_cast<qint64>(getpid())) + '\n';
    if (ftruncate(descriptor, 0) != 0
        || pwrite(descriptor, id.constData(), static_cast<size_t>(id.size()), 0) != id.size())
        qWarning() << "Failed to write the process id:" << qt_error_string(errno);
}

} // namespace

QString InstanceLock::defaultPath()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    const QByteArray hash = QCryptographicHash::hash(data.toUtf8(), QCryptographicHash::Sha256);
    return QStringLiteral("%1/kiosk-%2.lock")
        .arg(runtimeFolder(), QString::fromLatin1(hash.left(8).toHex()));
}

std::optional<qint64> InstanceLock::holder(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    struct flock lock = wholeFile();
    if (fcntl(file.handle(), F_OFD_GETLK, &lock) != 0 || lock.l_type == F_UNLCK)
        return {};
    return file.readLine().trimmed().toLongLong();
}

InstanceLock::InstanceLock(QString path)
    : m_path(std::move(path))
{
}

InstanceLock::~InstanceLock()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

bool InstanceLock::take()
{
    if (m_descriptor >= 0)
        return true;
    const int descriptor = open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_CLOEXEC,
                                S_IRUSR | S_IWUSR);
    struct flock lock = wholeFile();
    if (descriptor >= 0 && fcntl(descriptor, F_OFD_SETLK, &lock) == 0) {
        m_descriptor = descriptor;
        // Whoever may enter the folder may see whether a kiosk runs, whatever the umask is.
        (void)fchmod(descriptor, S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
        writeProcessId(descriptor);
        return true;
    }
    const int error = errno;
    if (descriptor >= 0)
        close(descriptor);
    if (error == EAGAIN)
        return false;
    qWarning() << "A second kiosk cannot be kept out, failed to lock" << m_path
               << qt_error_string(error);
    return true;
}
