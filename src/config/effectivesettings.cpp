// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/effectivesettings.h"

#include "config/config.h"
#include "config/defaults.h"
#include "config/keys.h"

#include <QDate>
#include <QRegularExpression>

#include <functional>
#include <limits>
#include <map>
#include <utility>

namespace {

/** Default of a setting, and what is in force of a stored value; as it stands without a function.
 */
struct Rule
{
    QVariant defaultValue;
    std::function<QVariant(const Config &config)> inForce;
};

Rule flag(const QString &key, bool defaultValue)
{
    return { defaultValue, [key, defaultValue](const Config &config) {
                return config.value(key, defaultValue).toBool();
            } };
}

Rule number(const QString &key, int defaultValue, int min, int max)
{
    return { defaultValue, [key, defaultValue, min, max](const Config &config) {
                return config.intSetting(key, defaultValue, min, max);
            } };
}

std::map<QString, Rule> rules()
{
    constexpr int anyInt = std::numeric_limits<int>::max();
    const auto bounded = [](const QString &key, int defaultValue, int min, int max) {
        return std::pair(key, number(key, defaultValue, min, max));
    };
    const auto onOff = [](const QString &key, bool defaultValue) {
        return std::pair(key, flag(key, defaultValue));
    };
    return {
        onOff(keys::hideMouseCursor, true),
        bounded(keys::refreshInterval, 300, 30, 3600),
        bounded(keys::inactivityTimeout, 60, 10, 3600),
        { keys::defaultView,
          { Config::PlenarView,
            [](const Config &config) {
                return config.value(keys::defaultView, Config::PlenarView).toInt();
            } } },
        { keys::eventDataUrlTemplate, { defaults::eventDataUrlTemplate, {} } },
        { keys::keycloakUrl, { defaults::keycloakUrl, {} } },
        { keys::keycloakClientId, { QString(), {} } },
        { keys::keycloakClientSecret, { QString(), {} } },
        onOff(keys::overrideDate, false),
        { keys::overrideDateDate, { QDate::currentDate(), {} } },
        bounded(keys::locationId, 0, -anyInt, anyInt),
        { keys::locationName, { Config::tr("Unknown location"), {} } },
        bounded(keys::plenarLocationId, 0, -anyInt, anyInt),
        bounded(keys::fontBaseSize, 12, 1, 1000),
        onOff(keys::attendanceEnabled, true),
        { keys::attendanceLogUrl, { defaults::attendanceLogUrl, {} } },
        { keys::attendanceSpoolDir, { QString(), {} } },
        { keys::attendanceNameCacheFile, { QString(), {} } },
        { keys::tallyxMode,
          { Config::TallyxContinuous,
            [](const Config &config) { return static_cast<int>(config.tallyxMode()); } } },
        { keys::tallyxLogUrl, { defaults::tallyxLogUrl, {} } },
        { keys::tallyxSpoolDir, { QString(), {} } },
        bounded(keys::tallyxGetStatusTimeout, 2500, 1000, 30000),
        bounded(keys::tallyxConfirmTimeout, 6000, 3000, 30000),
        bounded(keys::tallyxNotificationTimeout, 20000, 5000, anyInt),
        { keys::quirlUrl, { defaults::quirlUrl, {} } },
        onOff(keys::tpRegModeQR, true),
        onOff(keys::tpRegModeVK, true),
        { keys::preferredTpRegMode,
          { Config::TpRegVK,
            [](const Config &config) { return static_cast<int>(config.preferredTpRegMode()); } } },
    };
}

QString shown(const Config &config, const QString &key, const Rule &rule)
{
    const QVariant stored = config.value(key, rule.defaultValue);
    if (stored.type() == QVariant::StringList)
        return QStringLiteral("(unusable: a value with a comma needs quotes)");
    const QString text = maskPasswords(stored.toString());
    if (key == keys::keycloakClientSecret)
        return text.isEmpty() ? QStringLiteral("(empty)") : QStringLiteral("********");
    const QString inForce = rule.inForce ? rule.inForce(config).toString() : text;
    if (inForce != text)
        return QStringLiteral("%1 (stored: %2)").arg(inForce, text);
    return text.isEmpty() ? QStringLiteral("(empty)") : text;
}

} // namespace

QString maskPasswords(QString text)
{
    static const QRegularExpression userInfo(QStringLiteral("//\\S*@"));
    return text.replace(userInfo, QStringLiteral("//********@"));
}

QVector<EffectiveSetting> effectiveSettings(const Config &config)
{
    QVector<EffectiveSetting> settings;
    for (const auto &[key, rule] : rules())
        settings.append({ key, shown(config, key, rule), config.origin(key) });
    return settings;
}
