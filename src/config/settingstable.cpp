// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/settingstable.h"

#include "buildconfig.h"
#include "config/keys.h"

#include <QCoreApplication>
#include <QDate>

#include <algorithm>

namespace {

constexpr auto lowest = std::numeric_limits<int>::min();
constexpr auto highest = std::numeric_limits<int>::max();

/** The host is chosen at build time, the path is fixed. */
QString https(const char *host, const char *path)
{
    return QStringLiteral("https://") + QLatin1String(host) + QLatin1String(path);
}

QVector<Setting> makeTable()
{
    using Type = Setting::Type;
    constexpr auto local = Setting::Remote::No;
    constexpr auto atTop = Setting::Remote::TopLevel;
    constexpr auto nested = Setting::Remote::Settings;
    const QString none;
    const QString tokenUrl
        = https(buildconfig::idHost, "/auth/realms/deskhub/protocol/openid-connect/token");
    const QString attendanceUrl
        = https(buildconfig::plenarHost, "/rs/lumenboard-legacy/attendancelog");
    const QString tallyxUrl = https(buildconfig::tallyxHost, "/rs/log/v2");
    const QString quirlUrl = https(buildconfig::quirlHost, "");
    // A QDate::toString() format: everything but the date stands in single quotes.
    const QString schedulePattern
        = QStringLiteral("'%1'yyyy-MM-dd")
              .arg(https(buildconfig::plenarHost, "/rs/lumenboard/schedule/"));
    const QByteArray unknownLocation = QT_TRANSLATE_NOOP("Config", "Unknown location");

    // clang-format off
    return {
        // key, type, remote, default, minimum, maximum, if out of bounds
        { keys::locationId,                Type::Number, atTop,  0, lowest, highest },
        { keys::locationName,              Type::TranslatedText, atTop,  unknownLocation },
        { keys::plenarLocationId,          Type::Number, atTop,  0, lowest, highest },

        { keys::defaultView,               Type::Choice, nested, 1, 0, 1, 1 },
        { keys::inactivityTimeout,         Type::Number, nested, 60, 10, 3600 }, // s
        { keys::attendanceEnabled,         Type::Flag,   nested, true },
        { keys::attendanceLogUrl,          Type::Url,    nested, attendanceUrl },
        { keys::tallyxMode,                Type::Choice, nested, 2, 0, 2, 1 },
        { keys::tallyxLogUrl,              Type::Url,    nested, tallyxUrl },
        { keys::tallyxGetStatusTimeout,    Type::Number, nested, 2500, 1000, 30000 }, // ms
        { keys::tallyxConfirmTimeout,      Type::Number, nested, 6000, 3000, 30000 }, // ms
        { keys::tallyxNotificationTimeout, Type::Number, nested, 20000, 5000, highest }, // ms
        { keys::tpRegModeQR,               Type::Flag,   nested, true },
        { keys::tpRegModeVK,               Type::Flag,   nested, true },
        // 2 is not a mode, but has always been passed to the views.
        { keys::preferredTpRegMode,        Type::Choice, nested, 1, 0, 2, 1 },

        { keys::hideMouseCursor,           Type::Flag,   local,  true },
        { keys::fontBaseSize,              Type::Number, local,  12, 1, 1000 }, // pt
        { keys::refreshInterval,           Type::Number, local,  300, 30, 3600 }, // s
        { keys::eventDataUrlTemplate,      Type::Text,   local,  schedulePattern },
        { keys::overrideDate,              Type::Flag,   local,  false },
        { keys::overrideDateDate,          Type::Date,   local,  QStringLiteral("today") },
        { keys::keycloakUrl,               Type::Url,    local,  tokenUrl },
        { keys::keycloakClientId,          Type::Text,   local,  none },
        { keys::keycloakClientSecret,      Type::Secret, local,  none },
        { keys::quirlUrl,                  Type::Url,    local,  quirlUrl },
        { keys::userAgent,                 Type::Text,   local,  none },
        { keys::attendanceSpoolDir,        Type::Path,   local,  none },
        { keys::attendanceNameCacheFile,   Type::Path,   local,  none },
        { keys::tallyxSpoolDir,            Type::Path,   local,  none },
    };
    // clang-format on
}

} // namespace

QVariant Setting::defaultValue() const
{
    if (type == Type::Date)
        return QDate::currentDate();
    if (type == Type::TranslatedText)
        return QCoreApplication::translate("Config", fixedDefault.toByteArray().constData());
    return fixedDefault;
}

const QVector<Setting> &settingsTable()
{
    static const QVector<Setting> table = makeTable();
    return table;
}

const Setting &settingOf(const QString &key)
{
    const auto &table = settingsTable();
    const auto row = std::find_if(table.begin(), table.end(),
                                  [&key](const Setting &setting) { return setting.key == key; });
    if (row == table.end())
        qFatal("Setting \"%s\" is not in the table", qPrintable(key));
    return *row;
}

std::optional<qint64> wholeNumber(const QVariant &stored)
{
    // The file holds only text. A value of the configuration service must not count as something
    // else until the next start.
    bool ok = false;
    const qint64 number = stored.toString().toLongLong(&ok);
    return ok ? std::optional(number) : std::nullopt;
}
