// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/secrets.h"

#include "config/config.h"
#include "config/settingsfile.h"
#include "config/settingstable.h"

#include <QDebug>
#include <QFile>
#include <QSettings>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

bool holdsSecret(const QString &path)
{
    const QSettings file(path, QSettings::IniFormat);
    const auto &table = settingsTable();
    return std::any_of(table.begin(), table.end(), [&file](const Setting &setting) {
        return setting.type == Setting::Type::Secret
            && !file.value(setting.key).toString().isEmpty();
    });
}

} // namespace

QStringList secrets::readableByAll(const QStringList &files)
{
    QStringList found;
    std::copy_if(files.begin(), files.end(), std::back_inserter(found), [](const QString &file) {
        return QFile::permissions(file).testFlag(QFile::ReadOther) && holdsSecret(file);
    });
    return found;
}

void secrets::warn()
{
    static QStringList warned;
    static bool wasNamed = true;
    for (const QString &file : readableByAll(fallbackSettingsFiles())) {
        if (warned.contains(file))
            continue;
        qWarning() << "Settings file holds a secret that everybody can read:" << file;
        warned.append(file);
    }
    const bool isNamed = Config::instance()->hasCredentials();
    if (std::exchange(wasNamed, isNamed) && !isNamed)
        qWarning() << "Keycloak/clientId or Keycloak/clientSecret is not set: without them no "
                      "configuration is fetched and no presence is logged.";
}
