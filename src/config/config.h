// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "config/keys.h"

#include <QDate>
#include <QJsonDocument>
#include <QObject>
#include <QSettings>
#include <QUrl>

#include <functional>

class EventLocation;

/**
 * The settings; all access goes through this class.
 *
 * Nothing is cached: every read goes to the settings store (native format, user scope, with the
 * machine-wide file behind it), so a changed value takes effect at the next read. A missing or
 * unusable value is replaced as settingstable.h says, without a log line. Lives in the GUI thread,
 * where all writes happen; other threads may read through instance().
 */
class Config : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int inactivityTimeout READ inactivityTimeout CONSTANT)
    Q_PROPERTY(QString initialItem READ initialItem CONSTANT)
    Q_PROPERTY(
        QString locationName READ locationName WRITE setLocationName NOTIFY locationNameChanged)
    Q_PROPERTY(EventLocation *plenarLocation READ plenarLocation NOTIFY locationChanged)
    Q_PROPERTY(int fontBaseSize READ fontBaseSize NOTIFY fontBaseSizeChanged)
    Q_PROPERTY(QUrl quirlUrl READ quirlUrl CONSTANT)
    Q_PROPERTY(bool tpRegModeQR READ tpRegModeQR NOTIFY tpRegModeQRChanged)
    Q_PROPERTY(bool tpRegModeVK READ tpRegModeVK NOTIFY tpRegModeVKChanged)
    Q_PROPERTY(
        TpRegMode preferredTpRegMode READ preferredTpRegMode NOTIFY preferredTpRegModeChanged)

public:
    /** The start view. */
    enum View { DefaultView = 0, PlenarView = 1, ViewCount = 2 };
    Q_ENUM(View)

    /** How presence is logged. */
    enum TallyxMode {
        TallyxDisabled = 0,
        TallyxEnabled = 1,
        TallyxContinuous = 2,
        TallyxModeCount = 3
    };
    Q_ENUM(TallyxMode)

    /** How a transponder is registered: QR code and phone, or on-screen keyboard. */
    enum TpRegMode { TpRegQR = 0, TpRegVK = 1, TpRegModeCount = 2 };
    Q_ENUM(TpRegMode)

    /** Finds a location of the current schedule by its id; null if there is none. */
    using LocationLookup = std::function<EventLocation *(qint64 id)>;

    explicit Config(QObject *parent = nullptr);

    /** The process-wide object, child of the application object, created on first use. */
    static Config *instance();

    /** Seconds without a touch until the start view returns. */
    [[nodiscard]] int inactivityTimeout() const { return number(keys::inactivityTimeout); }
    /** File name of the start view. */
    [[nodiscard]] QString initialItem() const;
    [[nodiscard]] QString locationName() const { return text(keys::locationName); }
    void setLocationName(const QString &name);
    /** The configured location in the current schedule, or null. */
    [[nodiscard]] EventLocation *plenarLocation() const;
    /** Base of all relative font sizes, in points. */
    [[nodiscard]] int fontBaseSize() const { return number(keys::fontBaseSize); }
    /** Base URL of the configuration service. */
    [[nodiscard]] QUrl quirlUrl() const { return url(keys::quirlUrl); }
    [[nodiscard]] bool tpRegModeQR() const { return flag(keys::tpRegModeQR); }
    [[nodiscard]] bool tpRegModeVK() const { return flag(keys::tpRegModeVK); }
    [[nodiscard]] TpRegMode preferredTpRegMode() const
    {
        return static_cast<TpRegMode>(number(keys::preferredTpRegMode));
    }

    /**
     * The value of a setting, converted and checked by its row in the table of settings. number()
     * also reads choices. Callable from any thread.
     */
    [[nodiscard]] bool flag(const QString &key) const { return value(key).toBool(); }
    [[nodiscard]] int number(const QString &key) const;
    [[nodiscard]] QString text(const QString &key) const { return value(key).toString(); }
    [[nodiscard]] QUrl url(const QString &key) const { return QUrl(text(key)); }

    /** The value of a setting as it is stored, or its default. A credential wins over a secret. */
    [[nodiscard]] QVariant value(const QString &key) const;
    /** The same for a key that need not be in the table. */
    [[nodiscard]] QVariant value(const QString &key, const QVariant &defaultValue) const;

    /**
     * Absolute path of a file or folder for data: the value of @p variable, else that of the
     * setting @p key, else @p name in the local data of the program. Callable from any thread.
     */
    [[nodiscard]] QString dataPath(const char *variable, const QString &key,
                                   const QString &name) const;

    /**
     * An integer, clamped to [@p min, @p max]; @p defaultValue if it is missing or not a number.
     * Callable from any thread.
     */
    [[nodiscard]] int intSetting(const QString &key, int defaultValue, int min, int max) const;

    /**
     * Stores @p value unless it is already in force. A value equal to @p defaultValue is stored by
     * removing the key, unless a machine-wide value would then take effect. Returns true if
     * anything changed. GUI thread only.
     */
    bool setIfChanged(const QString &key, const QVariant &value, const QVariant &defaultValue);
    /** The same with the default of the table. */
    bool setIfChanged(const QString &key, const QVariant &value);

    /** Id of the screen's location in the schedule; 0 or less means none. */
    [[nodiscard]] int plenarLocationId() const { return number(keys::plenarLocationId); }

    /** Address of the schedule of @p date. */
    [[nodiscard]] QUrl eventDataUrl(QDate date) const;

    /** Milliseconds to the next scheduled refresh, from now. */
    [[nodiscard]] int msecsToNextRefresh() const;

    /** The day to show: today, or the fixed day of the settings if that is a date. */
    [[nodiscard]] QDate scheduleDate() const;
    /** False if the settings ask for a fixed day that is not a date. */
    [[nodiscard]] bool isScheduleDateValid() const;

    [[nodiscard]] bool hideMouseCursor() const { return flag(keys::hideMouseCursor); }

    /** Seconds between two refreshes of the schedule. */
    [[nodiscard]] int refreshInterval() const { return number(keys::refreshInterval); }

    /** Address of the identity server's token endpoint, and the screen's credentials there. */
    [[nodiscard]] QUrl keycloakUrl() const { return url(keys::keycloakUrl); }
    [[nodiscard]] QString keycloakClientId() const { return text(keys::keycloakClientId); }
    [[nodiscard]] QString keycloakClientSecret() const { return text(keys::keycloakClientSecret); }
    [[nodiscard]] bool hasCredentials() const
    {
        return !keycloakClientId().isEmpty() && !keycloakClientSecret().isEmpty();
    }

    /** Switch and address of attendance logging. */
    [[nodiscard]] bool attendanceEnabled() const { return flag(keys::attendanceEnabled); }
    [[nodiscard]] QUrl attendanceLogUrl() const { return url(keys::attendanceLogUrl); }

    /** Mode and address of presence logging. */
    [[nodiscard]] TallyxMode tallyxMode() const
    {
        return static_cast<TallyxMode>(number(keys::tallyxMode));
    }
    [[nodiscard]] QUrl tallyxLogUrl() const { return url(keys::tallyxLogUrl); }

    /** Where the value of @p key comes from: a credential, the user's file, another, the default.
     */
    [[nodiscard]] QString origin(const QString &key) const;

    /** Installed at start-up by the owner of the schedule, which this class must not know. */
    static void setLocationLookup(LocationLookup lookup);

Q_SIGNALS:
    void hideMouseCursorChanged(bool v);
    void inactivityTimeoutChanged(int v);
    void locationChanged(EventLocation *v);
    void locationNameChanged();
    void userAgentChanged(QString s);
    void fontBaseSizeChanged(int v);
    /** A document from the configuration service changed at least one setting. */
    void configChanged();
    void tpRegModeQRChanged(bool b);
    void tpRegModeVKChanged(bool b);
    void preferredTpRegModeChanged(TpRegMode v); // clazy:exclude=fully-qualified-moc-types

public Q_SLOTS:
    /** Looks up the configured location again and announces it. */
    void emitLocationChanged();

    /**
     * Stores the values of the screen's document from the configuration service. A key that is
     * missing from it stays unchanged; null removes the user's own value. Emits configChanged()
     * once if anything changed.
     */
    void applyConfiguration(QJsonDocument json);

    /**
     * Reads the files again if somebody has edited them. Keeps the values, with a log line, if the
     * user's file cannot be read. Emits nothing.
     */
    void reload();

private:
    [[nodiscard]] bool hasOwnValue(const QString &key) const;
    bool applyKey(const QJsonObject &object, const QString &key);
    void writeThrough();

    QSettings m_settings;
    /// The user's own file without the machine-wide one behind it. Created before any change: the
    /// constructor would write a pending one in the wrong encoding.
    QSettings m_userSettings;
};
