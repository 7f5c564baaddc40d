// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/config.h"

#include "base/fileidentity.h"
#include "config/credential.h"
#include "config/keys.h"
#include "config/refreshgrid.h"
#include "config/settingsfile.h"
#include "config/settingstable.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QPointer>
#include <QStandardPaths>
#include <QTime>

#include <algorithm>
#include <utility>

namespace {

// Without this Qt reads the umlauts of a hand-written file as Latin-1.
constexpr auto settingsCodec = "UTF-8";

QPointer<Config> s_instance;

/** Process-wide like the schedule, so that every Config object finds the location. */
Config::LocationLookup s_locationLookup;

} // namespace

Config::Config(QObject *parent)
    : QObject(parent)
    , m_userSettings(m_settings.format(), m_settings.scope(), m_settings.organizationName(),
                     m_settings.applicationName())
{
    m_settings.setIniCodec(settingsCodec);
    m_userSettings.setIniCodec(settingsCodec);
    m_userSettings.setFallbacksEnabled(false);
    protectSettingsFile(m_settings.fileName());
    if (removeDamagedValues(m_settings.fileName())) {
        m_settings.sync();
        m_userSettings.sync();
    }
    m_settings.allKeys(); // reads every section now, and with the right codec
    if (m_settings.status() != QSettings::NoError)
        qCritical() << "Failed to read settings from" << m_settings.fileName()
                    << "or from the machine-wide file";
}

Config *Config::instance()
{
    if (!s_instance)
        s_instance = new Config(QCoreApplication::instance());
    return s_instance;
}

QString Config::initialItem() const
{
    return number(keys::defaultView) == DefaultView ? QStringLiteral("Default.qml")
                                                    : QStringLiteral("LectureRoom.qml");
}

void Config::setLocationName(const QString &name)
{
    setIfChanged(keys::locationName, name, {});
    Q_EMIT locationNameChanged();
}

EventLocation *Config::plenarLocation() const
{
    const int id = plenarLocationId();
    return s_locationLookup ? s_locationLookup(id) : nullptr;
}

int Config::number(const QString &key) const
{
    const Setting &setting = settingOf(key);
    const int defaultNumber = setting.fixedDefault.toInt();
    if (setting.type != Setting::Type::Choice)
        return intSetting(key, defaultNumber, setting.minimum, setting.maximum);

    const auto choice = wholeNumber(value(key));
    if (!choice)
        return defaultNumber;
    const bool isKnown = *choice >= setting.minimum && *choice <= setting.maximum;
    return isKnown ? static_cast<int>(*choice) : setting.ifOutOfBounds;
}

QVariant Config::value(const QString &key) const
{
    const Setting &setting = settingOf(key);
    if (setting.type == Setting::Type::Secret) {
        if (const auto text = credential(key))
            return *text;
    }
    return m_settings.value(key, setting.defaultValue());
}

QVariant Config::value(const QString &key, const QVariant &defaultValue) const
{
    return m_settings.value(key, defaultValue);
}

QString Config::dataPath(const char *variable, const QString &key, const QString &name) const
{
    QString path = qEnvironmentVariable(variable);
    if (path.isEmpty())
        path = value(key, {}).toString();
    if (path.isEmpty())
        path = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)
            + QLatin1Char('/') + name;
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

int Config::intSetting(const QString &key, int defaultValue, int min, int max) const
{
    const auto number = wholeNumber(m_settings.value(key, defaultValue));
    return number ? static_cast<int>(std::clamp<qint64>(*number, min, max)) : defaultValue;
}

bool Config::setIfChanged(const QString &key, const QVariant &value)
{
    return setIfChanged(key, value, settingOf(key).defaultValue());
}

bool Config::setIfChanged(const QString &key, const QVariant &value, const QVariant &defaultValue)
{
    if (m_settings.value(key, defaultValue) == value)
        return false;

    if (value == defaultValue)
        m_settings.remove(key);
    // Also after a removal: the machine-wide value may differ from the default.
    if (m_settings.value(key, defaultValue) != value)
        m_settings.setValue(key, value);
    writeThrough();
    return true;
}

QUrl Config::eventDataUrl(QDate date) const
{
    return QUrl(date.toString(text(keys::eventDataUrlTemplate)), QUrl::TolerantMode);
}

int Config::msecsToNextRefresh() const
{
    const std::chrono::seconds interval(refreshInterval());
    return static_cast<int>(timeToNextRefresh(QTime::currentTime(), interval).count());
}

bool Config::isScheduleDateValid() const
{
    return !flag(keys::overrideDate) || value(keys::overrideDateDate).toDate().isValid();
}

QDate Config::scheduleDate() const
{
    const bool isFixed = flag(keys::overrideDate) && isScheduleDateValid();
    return isFixed ? value(keys::overrideDateDate).toDate() : QDate::currentDate();
}

QString Config::origin(const QString &key) const
{
    if (settingOf(key).type == Setting::Type::Secret && credential(key))
        return QStringLiteral("credential");
    if (hasOwnValue(key))
        return QStringLiteral("user");
    QSettings shared(QSettings::UserScope, m_settings.organizationName());
    shared.setFallbacksEnabled(false);
    if (shared.contains(key))
        return QStringLiteral("user's organisation file");
    return m_settings.contains(key) ? QStringLiteral("machine-wide") : QStringLiteral("default");
}

void Config::setLocationLookup(LocationLookup lookup)
{
    s_locationLookup = std::move(lookup);
}

void Config::emitLocationChanged()
{
    Q_EMIT locationChanged(plenarLocation());
}

void Config::applyConfiguration(QJsonDocument json)
{
    qDebug() << "Applying configuration" << json;

    const QJsonObject topLevel = json.object();
    const QJsonObject settings = topLevel.value(QLatin1String("settings")).toObject();
    bool changed = false;
    for (const Setting &setting : settingsTable()) {
        if (setting.remote == Setting::Remote::TopLevel)
            changed |= applyKey(topLevel, setting.key);
        else if (setting.remote == Setting::Remote::Settings)
            changed |= applyKey(settings, setting.key);
    }
    if (!changed)
        return;

    writeThrough();
    Q_EMIT configChanged();
}

void Config::reload()
{
    const QFileInfo file(m_settings.fileName());
    if (file.exists() && !file.isReadable()) {
        qCritical() << "Settings file cannot be read, keeping what was read before:"
                    << file.filePath();
        return;
    }
    removeDamagedValues(file.filePath());
    m_settings.sync();
}

/** True if the user's own file has @p key. m_settings would also find machine-wide values. */
bool Config::hasOwnValue(const QString &key) const
{
    return m_userSettings.contains(key);
}

bool Config::applyKey(const QJsonObject &object, const QString &key)
{
    const QJsonValue json = object.value(key);
    if (json.isUndefined())
        return false;
    if (json.isNull()) {
        if (!hasOwnValue(key))
            return false;
        m_settings.remove(key);
        return true;
    }

    const QVariant value = json.toVariant();
    if (value == m_settings.value(key))
        return false;
    m_settings.setValue(key, value);
    return true;
}

/** Writes to disk now, so that a power cut loses no change. */
void Config::writeThrough()
{
    // The status of QSettings stays bad after its first error. The file changes with each write.
    const auto before = fileIdentity(m_settings.fileName());
    m_settings.sync();
    if (fileIdentity(m_settings.fileName()) == before)
        qCritical() << "Failed to write settings to" << m_settings.fileName();
}
