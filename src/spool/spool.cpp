// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/spool.h"

#include "base/exceptions.h"
#include "base/reason.h"
#include "config/config.h"
#include "spool/disk.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>
#include <utility>

namespace {

constexpr int base = 36; // of the numbers in a file name
constexpr qint64 maxRecordBytes = 65536; // ours have about 200

bool isWritableFolder(const QString &path)
{
    const QFileInfo info(path);
    return info.isDir() && info.isWritable();
}

/** Writes a record for the first name of the current millisecond. */
DurableFile writeIn(const QString &folder, const QByteArray &record)
{
    const QString now = QString::number(QDateTime::currentMSecsSinceEpoch(), base);
    DurableFile file(folder + QLatin1Char('/') + now + QLatin1Char('0'));
    file.write(record);
    return file;
}

/** Commits @p file under the first free name of its millisecond and returns the path. */
QString commitToFreeName(DurableFile &file)
{
    const QString stem = file.path().chopped(1); // without the counter
    for (int counter = 0;; ++counter) {
        const QString path = stem + QString::number(counter, base);
        if (file.commitAs(path))
            return path;
    }
}

} // namespace

Spool::Spool(Place place)
    : m_place(std::move(place))
{
}

QString Spool::folder() const
{
    QString path = qEnvironmentVariable(m_place.variable);
    if (path.isEmpty())
        path = Config::instance()->value(m_place.setting, {}).toString();
    if (path.isEmpty())
        path = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)
            + QLatin1Char('/') + m_place.subfolder;
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

bool Spool::canBeListed() const
{
    const QFileInfo info(folder());
    if (!info.exists() || (info.isDir() && info.isReadable() && info.isExecutable()))
        return true;
    qWarning() << "The records in" << info.filePath() << "can not be listed.";
    return false;
}

int Spool::count() const
{
    int files = 0;
    for (QDirIterator each(folder(), recordFilter); each.hasNext(); each.next())
        ++files;
    return files;
}

QString Spool::create(const QByteArray &record) const
{
    DurableFile file = write(record);
    return commit(file);
}

DurableFile Spool::write(const QByteArray &record) const
{
    const QString path = folder();
    try {
        return writeIn(path, record);
    } catch (const AttendanceErrorException &) {
        // Check the folder only after a failure, since a person waits.
        if (isWritableFolder(path))
            throw;
    }
    // Create the folder on first use.
    if (!makeDurableFolder(path) || !isWritableFolder(path))
        qFatal("Spool directory \"%s\" could not be created or is not writable.",
               qPrintable(QDir::toNativeSeparators(path)));
    return writeIn(path, record);
}

QString Spool::commit(DurableFile &file) const
{
    try {
        return commitToFreeName(file);
    } catch (const AttendanceErrorException &) {
        if (isWritableFolder(QFileInfo(file.path()).path()))
            throw;
    }
    DurableFile again = write(file.content());
    return commitToFreeName(again);
}

QByteArray Spool::read(const QString &path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly) && file.size() <= maxRecordBytes)
        return file.readAll();
    qWarning() << "Failed to read" << path << file.size() << "bytes" << file.errorString();
    return {};
}

void Spool::replace(const QString &path, const QByteArray &record)
{
    DurableFile file(path);
    file.write(record);
    file.commitReplacing();
}

std::optional<Failure> Spool::remove(const QString &path)
{
    // Do not ask first whether the file exists: without access to the folder the answer is no.
    if (Disk::instance().unlink(path) || errno == ENOENT)
        return {};
    const int error = errno; // building texts may change it
    return Failure { QStringLiteral("%1 %2 %3")
                         .arg(path, QString::number(QFileDevice::RemoveError),
                              qt_error_string(error)),
                     Reason::ofDisk(error), AttendanceErrorException::notificationType };
}

void Spool::removeLeftovers() const
{
    const QString path = folder();
    QDirIterator each(path, { QStringLiteral(".*") + QLatin1String(DurableFile::unfinishedSuffix) },
                      QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (each.hasNext()) {
        const QString file = each.next();
        if (const auto failure = remove(file))
            qWarning() << "Failed to remove unfinished record" << failure->text;
        else
            qInfo() << "Removed unfinished record" << file;
    }
    // The run before may have been killed between a removal and its sync.
    if (QFileInfo(path).isReadable() && !Disk::instance().syncFolder(path))
        qWarning() << "Failed to sync" << path << qt_error_string(errno);
}
