// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/spoollist.h"

#include "attendance/attendancerequest.h"
#include "base/exceptions.h"
#include "base/json.h"
#include "presence/tallyxlogentity.h"
#include "status/statusfiles.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

#include <algorithm>

namespace {

QJsonObject readKnown(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (file.exists())
            throw Exception(QStringLiteral("%1 cannot be read; try as root.").arg(path));
        return {};
    }
    return readJson(file.readAll()).object();
}

/** The records that failed in this run, by name. */
QHash<QString, QJsonObject> failedByName(const QJsonObject &known)
{
    QHash<QString, QJsonObject> failed;
    const auto records = known.value(QStringLiteral("failed")).toArray();
    for (const QJsonValue &record : records)
        failed.insert(record.toObject().value(QStringLiteral("name")).toString(),
                      record.toObject());
    return failed;
}

} // namespace

SpoolList SpoolList::read(const QString &runtimeFolder)
{
    const QJsonObject known = readKnown(runtimeFolder + QLatin1Char('/') + statusfiles::spool);
    SpoolList list;
    list.add(QStringLiteral("attendance"), attendanceSpool().folder(),
             known.value(QStringLiteral("attendance")).toObject());
    list.add(QStringLiteral("presence"), tallyxSpool().folder(),
             known.value(QStringLiteral("presence")).toObject());
    std::sort(list.m_records.begin(), list.m_records.end(),
              [](const WaitingRecord &a, const WaitingRecord &b) { return a.made < b.made; });
    return list;
}

void SpoolList::add(const QString &queue, const QString &folder, const QJsonObject &known)
{
    const QString told = known.value(QStringLiteral("folder")).toString();
    const QFileInfo place(told.isEmpty() ? folder : told);
    if (place.exists() && !(place.isReadable() && place.isExecutable()))
        throw Exception(QStringLiteral("%1 cannot be read; try as root.").arg(place.filePath()));
    const auto failed = failedByName(known);
    Spool::visit(place.filePath(), [&](const QString &name) {
        const QString path = place.filePath() + QLatin1Char('/') + name;
        const QJsonObject last = failed.value(name);
        const QDateTime byName = Spool::timeOf(name);
        m_records.append(
            { queue, name, path, byName.isValid() ? byName : QFileInfo(path).lastModified().toUTC(),
              last.value(QStringLiteral("tries")).toInt(),
              QDateTime::fromString(last.value(QStringLiteral("lastTry")).toString(), Qt::ISODate),
              last.value(QStringLiteral("answer")).toString() });
    });
}
