// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/startcount.h"

#include "base/json.h"
#include "status/statusfiles.h"

#include <QDebug>
#include <QFile>
#include <QJsonObject>

namespace {

namespace key {
    const QString starts = QStringLiteral("starts");
    const QString crashes = QStringLiteral("crashes");
    const QString isRunning = QStringLiteral("running");
} // namespace key

QString pathIn(const QString &folder)
{
    return folder + QLatin1Char('/') + statusfiles::starts;
}

} // namespace

StartCount StartCount::read(const QString &folder)
{
    QFile file(pathIn(folder));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject object = readJson(file.readAll()).object();
    return { object.value(key::starts).toInt(), object.value(key::crashes).toInt(),
             object.value(key::isRunning).toBool() };
}

void StartCount::noteStart()
{
    ++starts;
    if (isRunning)
        ++crashes;
    isRunning = true;
}

void StartCount::write(const QString &folder) const
{
    // Not atomic, which would sync: the first frame waits for it, and only counts can be lost.
    QFile file(pathIn(folder));
    const QByteArray bytes = QJsonDocument(QJsonObject { { key::starts, starts },
                                                         { key::crashes, crashes },
                                                         { key::isRunning, isRunning } })
                                 .toJson(QJsonDocument::Compact);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        qWarning() << "Failed to write" << file.fileName() << file.errorString();
    file.setPermissions(file.permissions() | QFile::ReadGroup | QFile::ReadOther);
}
