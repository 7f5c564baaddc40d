// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/storedstatus.h"

#include "base/exceptions.h"
#include "base/instancelock.h"
#include "base/json.h"
#include "status/clocksync.h"
#include "status/statusfiles.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

const QString clockKey = QStringLiteral("clockSynchronised");

QFileInfo inFolder(const QString &folder, const QString &name)
{
    return QFileInfo(folder + QLatin1Char('/') + name);
}

} // namespace

QString StoredStatus::defaultFolder()
{
    const QString given = qEnvironmentVariable("RUNTIME_DIRECTORY");
    if (!given.isEmpty())
        return given.section(QLatin1Char(':'), 0, 0);
    const QString ofService = QStringLiteral("/run/lumenboard-kiosk");
    if (QFileInfo(ofService).isDir())
        return ofService;
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation)
        + QLatin1String("/lumenboard");
}

StoredStatus StoredStatus::read(const QString &folder)
{
    const QFileInfo info(folder);
    if (info.exists() && !(info.isDir() && info.isReadable() && info.isExecutable()))
        throw Exception(QStringLiteral("%1 cannot be read; try as root.").arg(folder));
    StoredStatus stored;
    // The lock first: a status that is found after it is never older than the lock's holder.
    stored.readLocks(folder);
    stored.m_starts = StartCount::read(folder);
    stored.readStatus(inFolder(folder, statusfiles::status).filePath());
    return stored;
}

bool StoredStatus::isPresent() const
{
    return isRunning() && !m_json.isEmpty()
        && value(QStringLiteral("process")).toInt() == *m_process;
}

/** Each user's records have a lock of their own; in one folder there is one kiosk at a time. */
void StoredStatus::readLocks(const QString &folder)
{
    const auto locks
        = QDir(folder).entryInfoList({ QStringLiteral("kiosk-*.lock") }, QDir::Files, QDir::Time);
    for (const QFileInfo &lock : locks) {
        if (!lock.isReadable())
            throw Exception(QStringLiteral("%1 cannot be read.").arg(lock.filePath()));
        m_process = InstanceLock::holder(lock.filePath());
        m_lockTime = lock.lastModified().toUTC();
        if (m_process)
            return;
    }
}

void StoredStatus::readStatus(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (file.exists())
            throw Exception(QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString()));
        return;
    }
    m_signOfLife = file.fileTime(QFileDevice::FileModificationTime).toUTC();
    m_json = readJson(file.readAll()).object();
    if (number(QStringLiteral("format")) != statusfiles::format)
        throw Exception(QStringLiteral("%1 is of another version of this program.").arg(path));
    // The kiosk may be locked up too well to know.
    const auto synchronised = isClockSynchronised();
    if (m_json.value(clockKey).isNull() && synchronised)
        m_json.insert(clockKey, *synchronised);
}

QJsonValue StoredStatus::value(const QString &path) const
{
    QJsonValue value = m_json;
    const auto keys = path.split(QLatin1Char('.'));
    for (const QString &key : keys)
        value = value.toObject().value(key);
    return value;
}

QDateTime StoredStatus::time(const QString &path) const
{
    return QDateTime::fromString(text(path), Qt::ISODate);
}

std::optional<std::chrono::seconds> StoredStatus::age(const QString &path) const
{
    const QDateTime when = time(path);
    return when.isValid() ? std::optional(age(when)) : std::nullopt;
}

std::chrono::seconds StoredStatus::age(const QDateTime &time) const
{
    return std::chrono::seconds(time.secsTo(m_now));
}
