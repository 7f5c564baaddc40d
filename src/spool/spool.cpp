// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/spool.h"

#include "base/exceptions.h"
#include "config/config.h"
#include "spool/durablefile.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>
#include <unistd.h>
#include <utility>

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

QString Spool::create(const QByteArray &record, std::function<void()> beforeSync) const
{
    const QString path = folder();
    const auto onlyOnce = [&beforeSync] {
        if (const auto call = std::exchange(beforeSync, {}))
            call();
    };
    try {
        return createIn(path, record, onlyOnce);
    } catch (const AttendanceErrorException &) {
        // Looked at only now: a person waits, and the folder is there but for the first time.
        if (QFileInfo(path).isDir() && QFileInfo(path).isWritable())
            throw;
    }
    if (!durablefile::makeFolder(path) || !QFileInfo(path).isWritable())
        qFatal("Spool directory \"%s\" could not be created or is not writable.",
               qPrintable(QDir::toNativeSeparators(path)));
    return createIn(path, record, onlyOnce);
}

QString Spool::createIn(const QString &folder, const QByteArray &record,
                        const std::function<void()> &beforeSync)
{
    constexpr int base = 36;
    const QString start
        = folder + QLatin1Char('/') + QString::number(QDateTime::currentMSecsSinceEpoch(), base);
    for (int counter = 0;; ++counter) {
        const QString path = start + QString::number(counter, base);
        if (durablefile::create(path, record, beforeSync))
            return path;
    }
}

void Spool::replace(const QString &path, const QByteArray &record)
{
    durablefile::replace(path, record);
}

std::optional<QString> Spool::remove(const QString &path)
{
    // Not by asking whether it exists: of a folder that can not be looked into the answer is no.
    if (unlink(QFile::encodeName(path).constData()) == 0 || errno == ENOENT)
        return {};
    return QStringLiteral("%1 %2 %3")
        .arg(path, QString::number(QFileDevice::RemoveError), qt_error_string(errno));
}

void Spool::removeLeftovers() const
{
    QDirIterator each(folder(),
                      { QStringLiteral(".*") + QLatin1String(durablefile::unfinishedEnding) },
                      QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (each.hasNext()) {
        QFile file(each.next());
        if (file.remove())
            qInfo() << "Removed unfinished record" << file.fileName();
        else
            qWarning() << "Failed to remove unfinished record" << file.fileName()
                       << file.errorString();
    }
}
