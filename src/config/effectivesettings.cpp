// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/effectivesettings.h"

#include "config/config.h"
#include "config/defaults.h"
#include "config/keys.h"

#include <QDate>
#include <QRegularExpression>

#include <limits>
#include <map>

namespace {

/** Default of a setting and, for numbers that are clamped, its bounds. */
struct Rule
{
    QVariant defaultValue;
    int min = 0;
    int max = 0; ///< with min: no bounds when both are 0
};

std::map<QString, Rule> rules()
{
    constexpr int anyInt = std::numeric_limits<int>::max();
    return {
        { keys::hideMouseCursor, { true } },
        { keys::refreshInterval, { 300, 30, 3600 } },
        { keys::inactivityTimeout, { 60, 10, 3600 } },
        { keys::defaultView, { Config::PlenarView } },
        { keys::eventDataUrlTemplate, { defaults::eventDataUrlTemplate } },
        { keys::keycloakUrl, { defaults::keycloakUrl } },
        { keys::keycloakClientId, { QString() } },
        { keys::keycloakClientSecret, { QString() } },
        { keys::overrideDate, { false } },
        { keys::overrideDateDate, { QDate::currentDate() } },
        { keys::locationId, { 0 } },
        { keys::locationName, { Config::tr("Unknown location") } },
        { keys::plenarLocationId, { 0 } },
        { keys::fontBaseSize, { 12, 1, 1000 } },
        { keys::attendanceEnabled, { true } },
        { keys::attendanceLogUrl, { defaults::attendanceLogUrl } },
        { keys::attendanceSpoolDir, { QString() } },
        { keys::attendanceNameCacheFile, { QString() } },
        { keys::tallyxMode, { Config::TallyxContinuous } },
        { keys::tallyxLogUrl, { defaults::tallyxLogUrl } },
        { keys::tallyxSpoolDir, { QString() } },
        { keys::tallyxGetStatusTimeout, { 2500, 1000, 30000 } },
        { keys::tallyxConfirmTimeout, { 6000, 3000, 30000 } },
        { keys::tallyxNotificationTimeout, { 20000, 5000, anyInt } },
        { keys::quirlUrl, { defaults::quirlUrl } },
        { keys::tpRegModeQR, { true } },
        { keys::tpRegModeVK, { true } },
        { keys::preferredTpRegMode, { Config::TpRegVK } },
    };
}

QString shown(const Config &config, const QString &key, const Rule &rule)
{
    const QVariant stored = config.value(key, rule.defaultValue);
    if (stored.type() == QVariant::StringList)
        return QStringLiteral("(unusable: a value with a comma needs quotes)");
    static const QRegularExpression credentials(QStringLiteral("//[^/@]*@"));
    const QString text = stored.toString().replace(credentials, QStringLiteral("//********@"));
    if (key == keys::keycloakClientSecret)
        return text.isEmpty() ? QStringLiteral("(empty)") : QStringLiteral("********");
    if (rule.min == rule.max)
        return text.isEmpty() ? QStringLiteral("(empty)") : text;
    const int inForce = config.intSetting(key, rule.defaultValue.toInt(), rule.min, rule.max);
    const QString number = QString::number(inForce);
    return number == text ? number : QStringLiteral("%1 (stored: %2)").arg(number, text);
}

} // namespace

QVector<EffectiveSetting> effectiveSettings(const Config &config)
{
    QVector<EffectiveSetting> settings;
    for (const auto &[key, rule] : rules())
        settings.append({ key, shown(config, key, rule), config.origin(key) });
    return settings;
}
