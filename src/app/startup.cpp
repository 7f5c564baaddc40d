// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/startup.h"

#include "api/lbapi.h"
#include "buildconfig.h"
#include "config/config.h"
#include "notifications/notification.h"
#include "notifications/notificationbutton.h"
#include "notifications/notificationsmodel.h"
#include "schedule/eventdata.h"

#include <QDebug>
#include <QFile>
#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QNetworkReply>
#include <QQmlEngine>
#include <QQuickStyle>
#include <QSslError>

#include <initializer_list>
#include <sys/stat.h>

namespace {

constexpr auto qmlModule = "Lumenboard";

/** The process-wide objects belong to C++: an engine that goes must not take them along. */
template <typename T> QObject *provideSingleton(QQmlEngine *, QJSEngine *)
{
    T *object = T::instance();
    QQmlEngine::setObjectOwnership(object, QQmlEngine::CppOwnership);
    return object;
}

template <typename T> void registerQmlType(const char *name)
{
    qmlRegisterType<T>(qmlModule, 1, 0, name);
}

void loadFaces(const QString &pattern, std::initializer_list<const char *> faces)
{
    for (const char *face : faces) {
        const QString file = pattern.arg(QLatin1String(face));
        if (QFile::exists(file) && QFontDatabase::addApplicationFont(file) < 0)
            qWarning() << "Failed to load font" << file;
    }
}

/** For what an operator may set otherwise, to look into a fault. */
void setDefaultVariable(const char *name, const char *value)
{
    if (!qEnvironmentVariableIsSet(name))
        qputenv(name, value);
}

/**
 * Shortens the way from an event to the picture, above all where the processor draws it.
 *
 * Items lie flat and in order, and no clip is turned or round: a depth and a stencil buffer would
 * save no work, and each frame would begin with clearing them, 4 bytes for every pixel. Qt's
 * wait of 5 ms before a frame, meant to gather events, gathers nothing here. 2 ms are left: a
 * card's record is on its way to the service before drawing takes the processor.
 */
void prepareRendering()
{
    setDefaultVariable("QSG_NO_DEPTH_BUFFER", "1");
    setDefaultVariable("QSG_NO_STENCIL_BUFFER", "1");
    setDefaultVariable("QT_QPA_UPDATE_IDLE_TIME", "2"); // ms
}

} // namespace

void prepareEnvironment()
{
    // Settings, spool files and caches are nobody else's business.
    umask(S_IRWXG | S_IRWXO);

    qputenv("QT_IM_MODULE", "qtvirtualkeyboard");
    // The keyboard stands in the main view or nowhere, never in a window of its own.
    qputenv("QT_VIRTUALKEYBOARD_DESKTOP_DISABLE", "1");
    qputenv("QML_XHR_ALLOW_FILE_READ", "0");
    qputenv("QML_XHR_ALLOW_FILE_WRITE", "0");
    // Without TZ the C library looks at the zone file anew for every local time that is made.
    setDefaultVariable("TZ", ":/etc/localtime");
    // Qt looks at all network interfaces every 10 s, of which nothing here depends: requests fail
    // and succeed by what the system says at that moment.
    setDefaultVariable("QT_BEARER_POLL_TIMEOUT", "86400000"); // ms
    prepareRendering();

    QQuickStyle::setStyle(QStringLiteral("Material"));
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
}

void nameApplication()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Kettlewood"));
    QCoreApplication::setOrganizationDomain(QLatin1String(buildconfig::organisationDomain));
    QCoreApplication::setApplicationName(QStringLiteral("Lumenboard2"));
    QCoreApplication::setApplicationVersion(QLatin1String(buildconfig::version));
}

void setGermanLocale()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void Translations::install()
{
    if (m_qt.load(QLocale(), QStringLiteral("qt"), QStringLiteral("_"),
                  QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qt);

    if (m_program.load(QLocale(), QStringLiteral("lumenboard"), QStringLiteral("."),
                       QStringLiteral(":/i18n")))
        QCoreApplication::installTranslator(&m_program);
    else
        qWarning() << "Failed to load translation";
}

void loadFonts()
{
    loadFaces(QStringLiteral(":/fonts/Font Awesome 5 %1.otf"),
              { "Brands-Regular-400", "Pro-Light-300", "Pro-Regular-400", "Pro-Solid-900",
                "Duotone-Solid-900", "Free-Regular-400", "Free-Solid-900" });
    loadFaces(QStringLiteral(":/fonts/MavenPro-%1.ttf"), { "Black", "Bold", "Medium", "Regular" });

    const QString textFamily = QStringLiteral("Maven Pro");
    QFont font = QGuiApplication::font();
    font.setFamily(textFamily);
    QGuiApplication::setFont(font);
    // The styles also name these; what a system puts in their place differs between machines.
    QFont::insertSubstitution(QStringLiteral("MavenPro"), textFamily);
    QFont::insertSubstitution(QStringLiteral("Bandolino"), textFamily);
    QFont::insertSubstitution(QStringLiteral("Font Awesome"),
                              QStringLiteral("Font Awesome 5 Free"));
}

void registerMetaTypes()
{
    // Registered on first use otherwise, and two threads that do so at once get in each other's
    // way.
    qRegisterMetaType<QNetworkReply::NetworkError>();
    qRegisterMetaType<QList<QSslError>>();

    qRegisterMetaType<Notification *>();
    qRegisterMetaType<LBAPI *>();
    qRegisterMetaType<Config *>();
    qRegisterMetaType<EventAudience *>();
    qRegisterMetaType<EventEAudience *>();
    qRegisterMetaType<EventData *>();
    qRegisterMetaType<EventLocation *>();
}

void registerQmlTypes()
{
    qmlRegisterSingletonType<LBAPI>(qmlModule, 1, 0, "LBAPI", &provideSingleton<LBAPI>);
    registerQmlType<Config>("LBConfig");
    registerQmlType<EventData>("LBEventData");
    registerQmlType<Event>("LBEvent");
    registerQmlType<EventLocation>("LBEventLocation");
    registerQmlType<EventAudience>("LBEventAudience");
    registerQmlType<EventEAudience>("LBEventEAudience");
    registerQmlType<Notification>("LBNotification");
    registerQmlType<NotificationButton>("LBNotificationButton");
    registerQmlType<NotificationsModel>("LBNotifications");

    // Reached as a property of LBAPI, not through a provider.
    QQmlEngine::setObjectOwnership(Config::instance(), QQmlEngine::CppOwnership);
}
