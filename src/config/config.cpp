// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/config.h"

#include "config/defaults.h"
#include "config/keys.h"
#include "config/refreshgrid.h"
#include "config/settingsfile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QJsonObject>
#include <QPointer>
#include <QTime>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <sys/stat.h>
#include <utility>

namespace {

// Hand-written files hold umlauts; without this Qt reads them as Latin-1.
constexpr auto settingsCodec = "UTF-8";

QPointer<Config> s_instance;

/** Process-wide, as is the schedule that it looks into: any Config object finds the location. */
Config::LocationLookup s_locationLookup;

/** A number as the settings hold it, however large; nothing when it is none. */
std::optional<qint64> toInteger(const QVariant &value)
{
    bool ok = false;
    if (value.type() != QVariant::Double) {
        const qint64 number = value.toLongLong(&ok);
        return ok ? std::optional(number) : std::nullopt;
    }
    constexpr double bound = 1e15; // beyond it a conversion would be undefined
    return qRound64(std::clamp(value.toDouble(), -bound, bound));
}

/** What changes whenever QSettings replaces its file. */
std::pair<quint64, qint64> fileIdentity(const QString &path)
{
    struct stat info
    {
    };
    if (stat(QFile::encodeName(path).constData(), &info) != 0)
        return {};
    return { info.st_ino, info.st_mtim.tv_sec * 1000000000LL + info.st_mtim.tv_nsec };
}

} // namespace

Config::Config(QObject *parent)
    : QObject(parent)
    , m_own(m_settings.format(), m_settings.scope(), m_settings.organizationName(),
            m_settings.applicationName())
{
    m_settings.setIniCodec(settingsCodec);
    m_own.setIniCodec(settingsCodec);
    m_own.setFallbacksEnabled(false);
    protectSettingsFile(m_settings.fileName());
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

int Config::inactivityTimeout() const
{
    return intSetting(keys::inactivityTimeout, 60, 10, 3600);
}

QString Config::initialItem() const
{
    const int view = m_settings.value(keys::defaultView, PlenarView).toInt();
    return view == DefaultView ? QStringLiteral("Default.qml") : QStringLiteral("LectureRoom.qml");
}

QString Config::locationName() const
{
    return m_settings.value(keys::locationName, tr("Unknown location")).toString();
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

int Config::fontBaseSize() const
{
    return intSetting(keys::fontBaseSize, 12, 1, 1000);
}

QUrl Config::quirlUrl() const
{
    return m_settings.value(keys::quirlUrl, defaults::quirlUrl).toUrl();
}

bool Config::tpRegModeQR() const
{
    return m_settings.value(keys::tpRegModeQR, true).toBool();
}

bool Config::tpRegModeVK() const
{
    return m_settings.value(keys::tpRegModeVK, true).toBool();
}

Config::TpRegMode Config::preferredTpRegMode() const
{
    const int mode = m_settings.value(keys::preferredTpRegMode, TpRegVK).toInt();
    // TpRegModeCount itself is let through, as the views have always been given it.
    return mode < 0 || mode > TpRegModeCount ? TpRegVK : static_cast<TpRegMode>(mode);
}

int Config::intSetting(const QString &key, int defaultValue, int min, int max) const
{
    const auto value = toInteger(m_settings.value(key, defaultValue));
    return value ? static_cast<int>(std::clamp<qint64>(*value, min, max)) : defaultValue;
}

bool Config::setIfChanged(const QString &key, const QVariant &value, const QVariant &defaultValue)
{
    if (m_settings.value(key, defaultValue) == value)
        return false;

    if (value == defaultValue)
        m_settings.remove(key);
    // Also after a removal: the machine-wide file may hold another value than the default.
    if (m_settings.value(key, defaultValue) != value)
        m_settings.setValue(key, value);
    writeThrough();
    return true;
}

int Config::plenarLocationId() const
{
    constexpr int largest = std::numeric_limits<int>::max();
    const int id = intSetting(keys::plenarLocationId, 0, -largest, largest);
    if (id <= 0)
        qCritical() << "Plenar location ID not set";
    return id;
}

QUrl Config::eventDataUrl(QDate date) const
{
    const QString pattern
        = m_settings.value(keys::eventDataUrlTemplate, defaults::eventDataUrlTemplate).toString();
    return QUrl(date.toString(pattern), QUrl::TolerantMode);
}

int Config::msecsToNextRefresh() const
{
    const std::chrono::seconds interval(refreshInterval());
    return static_cast<int>(timeToNextRefresh(QTime::currentTime(), interval).count());
}

QDate Config::scheduleDate() const
{
    const QDate today = QDate::currentDate();
    if (!m_settings.value(keys::overrideDate, false).toBool())
        return today;
    const QDate date = m_settings.value(keys::overrideDateDate, today).toDate();
    if (date.isValid())
        return date;
    qWarning() << "Setting" << keys::overrideDateDate << "is no date, showing today";
    return today;
}

bool Config::hideMouseCursor() const
{
    return m_settings.value(keys::hideMouseCursor, true).toBool();
}

int Config::refreshInterval() const
{
    return intSetting(keys::refreshInterval, 300, 30, 3600);
}

QString Config::keycloakUrl() const
{
    return m_settings.value(keys::keycloakUrl, defaults::keycloakUrl).toString();
}

QString Config::keycloakClientId() const
{
    return m_settings.value(keys::keycloakClientId).toString();
}

QString Config::keycloakClientSecret() const
{
    return m_settings.value(keys::keycloakClientSecret).toString();
}

bool Config::attendanceEnabled() const
{
    return m_settings.value(keys::attendanceEnabled, true).toBool();
}

QUrl Config::attendanceLogUrl() const
{
    return QUrl(m_settings.value(keys::attendanceLogUrl, defaults::attendanceLogUrl).toString());
}

Config::TallyxMode Config::tallyxMode() const
{
    const auto mode = toInteger(m_settings.value(keys::tallyxMode, TallyxContinuous));
    const bool isKnown = mode == TallyxDisabled || mode == TallyxContinuous;
    return isKnown ? static_cast<TallyxMode>(*mode) : TallyxEnabled;
}

QUrl Config::tallyxLogUrl() const
{
    return QUrl(m_settings.value(keys::tallyxLogUrl, defaults::tallyxLogUrl).toString());
}

QVariant Config::value(const QString &key, const QVariant &defaultValue) const
{
    return m_settings.value(key, defaultValue);
}

QString Config::origin(const QString &key) const
{
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

    const std::array ofTheScreen { keys::locationId, keys::locationName, keys::plenarLocationId };
    const std::array ofTheSettings {
        keys::defaultView,
        keys::inactivityTimeout,
        keys::attendanceEnabled,
        keys::attendanceLogUrl,
        keys::tallyxMode,
        keys::tallyxLogUrl,
        keys::tallyxGetStatusTimeout,
        keys::tallyxConfirmTimeout,
        keys::tallyxNotificationTimeout,
        keys::tpRegModeQR,
        keys::tpRegModeVK,
        keys::preferredTpRegMode,
    };

    bool changed = false;
    const QJsonObject screen = json.object();
    for (const QString &key : ofTheScreen)
        changed |= applyKey(screen, key);
    const QJsonObject settings = screen.value(QLatin1String("settings")).toObject();
    for (const QString &key : ofTheSettings)
        changed |= applyKey(settings, key);
    if (!changed)
        return;

    writeThrough();
    Q_EMIT configChanged();
}

/** Whether the user's own file has @p key; contains() would also see the machine-wide defaults. */
bool Config::hasOwnValue(const QString &key) const
{
    return m_own.contains(key);
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

/** Writes to disk now: a power cut a moment later must not lose a change. */
void Config::writeThrough()
{
    // The status of QSettings never returns to good after its first error, so the file tells.
    const auto before = fileIdentity(m_settings.fileName());
    m_settings.sync();
    if (fileIdentity(m_settings.fileName()) == before)
        qCritical() << "Failed to write settings to" << m_settings.fileName();
}
