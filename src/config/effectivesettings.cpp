// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/effectivesettings.h"

#include "config/config.h"
#include "config/keys.h"
#include "config/settingstable.h"

#include <QDebug>
#include <QHash>
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

QString textOf(const QVariant &stored)
{
    const QStringList parts = stored.toStringList(); // Qt cuts at an unquoted comma
    return parts.isEmpty() ? stored.toString() : parts.join(QLatin1String(", "));
}

QString problemOf(const Config &config, const Setting &setting)
{
    constexpr int maxLength = 100; // it may come from the service, and masking is not linear

    const QVariant stored = config.value(setting.key);
    if (!setting.isNumber() || wholeNumber(stored))
        return {};
    const QString text = textOf(stored);
    QString problem; // QDebug escapes control characters, which could forge a line of the log
    QDebug line = QDebug(&problem).nospace();
    if (text.size() > maxLength)
        line << "a text of " << text.size() << " characters";
    else
        line << maskPasswords(text);
    line << " is no whole number, using " << config.number(setting.key);
    return problem;
}

QString shown(const Config &config, const Setting &setting)
{
    const QVariant stored = config.value(setting.key);
    if (stored.type() == QVariant::StringList && !setting.isNumber())
        return QStringLiteral("(unusable: a value with a comma needs quotes)");
    const QString text = maskPasswords(textOf(stored));
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
            settings.append({ setting.key, shown(config, setting), config.origin(setting.key),
                              problemOf(config, setting) });
    }
    std::sort(settings.begin(), settings.end(),
              [](const auto &one, const auto &other) { return one.key < other.key; });
    return settings;
}

void warnOfSettings()
{
    static QHash<QString, QString> warned; // by key
    for (const Setting &setting : settingsTable()) {
        const QString problem = problemOf(*Config::instance(), setting);
        if (!problem.isEmpty() && problem != warned.value(setting.key))
            qWarning().noquote() << "Setting" << setting.key + QLatin1Char(':') << problem;
        warned.insert(setting.key, problem);
    }
}
