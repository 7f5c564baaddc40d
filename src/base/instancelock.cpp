// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/instancelock.h"

#include "base/runtimefolder.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

/**
 * A lock of the open file: unlike one of the process it does not end when some other code closes
 * the same file, and unlike that of flock() one can look at it without taking it. Its length is
 * the process id, since the kernel names no process for such a lock: whoever finds the lock knows
 * its holder in the same moment, and no file can say something else.
 */
struct flock lockOf(pid_t process)
{
    struct flock lock
    {
    };
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_len = process;
    return lock;
}

/** The lock in the way of ours; of type F_UNLCK if there is none, or if one cannot look. */
struct flock foundLock(int descriptor)
{
    struct flock lock = lockOf(getpid());
    if (fcntl(descriptor, F_OFD_GETLK, &lock) != 0)
        lock.l_type = F_UNLCK;
    return lock;
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
    const struct flock lock = foundLock(file.handle());
    if (lock.l_type != F_WRLCK)
        return {};
    return lock.l_len;
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
    struct flock lock = lockOf(getpid());
    if (descriptor >= 0 && fcntl(descriptor, F_OFD_SETLK, &lock) == 0) {
        m_descriptor = descriptor;
        // Whoever may enter the folder may see whether a kiosk runs, whatever the umask is.
        (void)fchmod(descriptor, S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
        (void)futimens(descriptor, nullptr); // since when it is held
        return true;
    }
    const int error = errno;
    // A lock for reading is no kiosk's: anybody who may read the file can take one.
    const bool isRefusedByReader = error == EAGAIN && foundLock(descriptor).l_type == F_RDLCK;
    if (descriptor >= 0)
        close(descriptor);
    if (error == EAGAIN && !isRefusedByReader)
        return false;
    qWarning() << "A second kiosk cannot be kept out, failed to lock" << m_path
               << qt_error_string(error);
    return true;
}
