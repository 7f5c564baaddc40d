// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "spool/unusablefolder.h"

#include "base/runtimefolder.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QFile>

namespace {

QString markOf(const QString &folder)
{
    const QByteArray hash = QCryptographicHash::hash(folder.toUtf8(), QCryptographicHash::Sha256);
    return QStringLiteral("%1/unusable-%2")
        .arg(runtimeFolder(), QString::fromLatin1(hash.left(8).toHex()));
}

} // namespace

void unusablefolder::remember(const QString &folder)
{
    QFile mark(markOf(folder));
    if (!mark.open(QIODevice::WriteOnly))
        qWarning() << "Failed to create" << mark.fileName() << mark.errorString();
}

bool unusablefolder::isRemembered(const QString &folder)
{
    return QFile::exists(markOf(folder));
}

void unusablefolder::forget(const QString &folder)
{
    QFile mark(markOf(folder));
    if (mark.exists() && !mark.remove())
        qWarning() << "Failed to remove" << mark.fileName() << mark.errorString();
}
