// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/settingsfile.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

void protectSettingsFile(const QString &path)
{
    constexpr QFile::Permissions ownerOnly
        = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;

    const QFileInfo file(path);
    const QString folder = file.absolutePath();
    if (!QFileInfo::exists(folder)) {
        if (!QDir().mkpath(folder)) {
            qCritical() << "Failed to create settings folder" << folder;
            return;
        }
        if (!QFile::setPermissions(folder, ownerOnly | QFile::ExeOwner | QFile::ExeUser))
            qWarning() << "Failed to restrict settings folder" << folder;
    }

    if (!file.isFile() || (file.permissions() & ~ownerOnly) == 0)
        return;
    if (QFile::setPermissions(path, ownerOnly))
        qInfo() << "Settings file was open to others, restricted to its owner:" << path;
    else
        qWarning() << "Settings file is open to others and can not be restricted:" << path;
}

bool removeDamagedValues(const QString &path)
{
    // Only numbers, dates and times have a fixed size. The others hold lengths and types of their
    // own, for which Qt reserves gigabytes or calls loaders that trust them.
    static const QRegularExpression damaged(QStringLiteral(
        R"((Variant|DateTime)\((?!\\0\\0\\0\\(x([1-6ef]|10)(?![0-9a-fA-F])|0(?![0-7]))))"));

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QByteArray kept;
    int removed = 0;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (damaged.match(QString::fromLatin1(line)).hasMatch())
            ++removed;
        else
            kept += line;
    }
    if (removed == 0)
        return false;
    qCritical() << "Removing" << removed << "damaged lines from settings file" << path;
    QSaveFile repaired(path);
    if (repaired.open(QIODevice::WriteOnly) && repaired.write(kept) == kept.size()
        && repaired.commit())
        return true;
    qCritical() << "Failed to repair settings file" << path << repaired.errorString();
    return false;
}
