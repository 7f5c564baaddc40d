// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/effectivesettings.h"

#include "config/config.h"
#include "config/keys.h"
#include "config/settingstable.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/** The value that the kiosk uses. */
QString inForce(const Config &config, const Setting &setting)
{
    switch (setting.type) {
    case Setting::Type::Flag:
        return QVariant(config.flag(setting.key)).toString();
    case Setting::Type::Number:
    case Setting::Type::Choice:
        return QString::number(config.number(setting.key));
    default:
        return maskPasswords(config.text(setting.key));
    }
}

QString shown(const Config &config, const Setting &setting)
{
    const QVariant stored = config.value(setting.key);
    if (stored.type() == QVariant::StringList)
        return QStringLiteral("(unusable: a value with a comma needs quotes)");
    const QString text = maskPasswords(stored.toString());
    const QString value = inForce(config, setting);
    if (value.isEmpty())
        return QStringLiteral("(empty)");
    if (setting.type == Setting::Type::Secret)
        return QStringLiteral("********");
    return value == text ? value : QStringLiteral("%1 (stored: %2)").arg(value, text);
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
    for (const Setting &setting : settingsTable()) {
        if (setting.key != keys::userAgent) // nothing reads it
            settings.append({ setting.key, shown(config, setting), config.origin(setting.key) });
    }
    std::sort(settings.begin(), settings.end(),
              [](const auto &one, const auto &other) { return one.key < other.key; });
    return settings;
}
