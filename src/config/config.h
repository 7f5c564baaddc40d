// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDate>
#include <QJsonDocument>
#include <QObject>
#include <QSettings>
#include <QUrl>

#include <functional>

class EventLocation;

/**
 * The only way to the settings.
 *
 * Nothing is cached: every read goes to the settings store (native format, user scope, with the
 * machine-wide file behind it), so a changed value takes effect at the next read. Lives in the GUI
 * thread, where all writes happen; other threads may read through instance().
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
    /** The view that the screen starts with. */
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

    /** Finds a location of the current schedule by its id; null when there is none. */
    using LocationLookup = std::function<EventLocation *(qint64 id)>;

    explicit Config(QObject *parent = nullptr);

    /** The process-wide object, child of the application object, created on first use. */
    static Config *instance();

    /** Seconds without a touch after which the start view returns, 10..3600. */
    [[nodiscard]] int inactivityTimeout() const;
    /** File name of the start view. */
    [[nodiscard]] QString initialItem() const;
    [[nodiscard]] QString locationName() const;
    void setLocationName(const QString &name);
    /** The configured location in the current schedule, or null. Logs when no id is set. */
    [[nodiscard]] EventLocation *plenarLocation() const;
    /** Base of all relative font sizes, in points, 1..1000. */
    [[nodiscard]] int fontBaseSize() const;
    /** Base URL of the configuration service. */
    [[nodiscard]] QUrl quirlUrl() const;
    [[nodiscard]] bool tpRegModeQR() const;
    [[nodiscard]] bool tpRegModeVK() const;
    [[nodiscard]] TpRegMode preferredTpRegMode() const;

    /**
     * An integer setting: @p defaultValue when it is missing or no number, else clamped into
     * [@p min, @p max]. Callable from any thread.
     */
    [[nodiscard]] int intSetting(const QString &key, int defaultValue, int min, int max) const;

    /**
     * Stores @p value unless the store already says so; a value equal to @p defaultValue is stored
     * by removing the key, except where a machine-wide default would then show through.
     * Returns whether anything changed. GUI thread only.
     */
    bool setIfChanged(const QString &key, const QVariant &value, const QVariant &defaultValue);

    /** Id of the screen's location in the schedule; 0 or less means none and is logged. */
    [[nodiscard]] int plenarLocationId() const;

    /** Address of the schedule of @p date. */
    [[nodiscard]] QUrl eventDataUrl(QDate date) const;

    /** Milliseconds to the next scheduled refresh, from now. */
    [[nodiscard]] int msecsToNextRefresh() const;

    /** Whether a fixed date is shown instead of today, and the date to show. */
    [[nodiscard]] QDate scheduleDate() const;

    /** Whether the mouse cursor is hidden. */
    [[nodiscard]] bool hideMouseCursor() const;

    /** Seconds between two refreshes of the schedule, 30..3600. */
    [[nodiscard]] int refreshInterval() const;

    /** Address of the identity server's token endpoint, and the screen's credentials there. */
    [[nodiscard]] QString keycloakUrl() const;
    [[nodiscard]] QString keycloakClientId() const;
    [[nodiscard]] QString keycloakClientSecret() const;

    /** Whether a card logs attendance, and where to. */
    [[nodiscard]] bool attendanceEnabled() const;
    [[nodiscard]] QUrl attendanceLogUrl() const;

    /** How presence is logged, and where to; an unknown mode is as TallyxEnabled. */
    [[nodiscard]] TallyxMode tallyxMode() const;
    [[nodiscard]] QUrl tallyxLogUrl() const;

    /** The stored value of any setting, for those who only show it. */
    [[nodiscard]] QVariant value(const QString &key, const QVariant &defaultValue) const;
    /** Where the value of @p key comes from: "user", "user's organisation file", "machine-wide" or
     * "default". */
    [[nodiscard]] QString origin(const QString &key) const;

    /** Installed at start-up by whoever holds the schedule; this class knows nothing of it. */
    static void setLocationLookup(LocationLookup lookup);

Q_SIGNALS:
    void hideMouseCursorChanged(bool v);
    void inactivityTimeoutChanged(int v);
    void locationChanged(EventLocation *v);
    void locationNameChanged();
    void userAgentChanged(QString s);
    void fontBaseSizeChanged(int v);
    /** A document from the server changed at least one setting. */
    void configChanged();
    void tpRegModeQRChanged(bool b);
    void tpRegModeVKChanged(bool b);
    void preferredTpRegModeChanged(TpRegMode v); // clazy:exclude=fully-qualified-moc-types

public Q_SLOTS:
    /** Looks the configured location up again and announces it. */
    void emitLocationChanged();

    /**
     * Stores the values of the screen's configuration document from the server. Keys that it does
     * not name stay as they are, null returns to the default. Emits configChanged() once if
     * anything changed.
     */
    void applyConfiguration(QJsonDocument json);

private:
    [[nodiscard]] bool hasOwnValue(const QString &key) const;
    bool applyKey(const QJsonObject &object, const QString &key);
    void writeThrough();

    QSettings m_settings;
    /// The user's own file without the machine-wide one behind it. Made once, while nothing waits
    /// to be written: a further object would write it in its own, still unset encoding.
    QSettings m_own;
};
