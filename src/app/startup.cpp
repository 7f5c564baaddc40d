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
#include "spool/queuestatus.h"

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
#include <QSet>
#include <QSslError>
#include <QSurfaceFormat>

#include <initializer_list>
#include <sys/stat.h>

namespace {

constexpr auto qmlModule = "Lumenboard";

/** Keeps ownership in C++: a destroyed engine must not delete a process-wide object. */
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

/** Sets the variable unless an operator has set it, for example to analyse a fault. */
void setDefaultVariable(const char *name, const char *value)
{
    if (!qEnvironmentVariableIsSet(name))
        qputenv(name, value);
}

/**
 * Shortens the time from an event to its frame, above all without a graphics processor.
 *
 * Each frame would clear a depth and a stencil buffer, 4 bytes per pixel. They save nothing here:
 * items are flat and drawn in order, and no clip is rotated or round. Qt collects events for 5 ms
 * before each frame, but there are few. 2 ms are left, so that a card's record is on its way to the
 * service before drawing takes the processor.
 */
void prepareRendering()
{
    setDefaultVariable("QSG_NO_DEPTH_BUFFER", "1");
    setDefaultVariable("QSG_NO_STENCIL_BUFFER", "1");
    setDefaultVariable("QT_QPA_UPDATE_IDLE_TIME", "2"); // ms
}

/** Asks for 8 bits a colour. Qt would choose 16 bits a pixel, which Mesa offers under Wayland. */
void prepareColours()
{
    auto format = QSurfaceFormat::defaultFormat();
    format.setRedBufferSize(8);
    format.setGreenBufferSize(8);
    format.setBlueBufferSize(8);
    QSurfaceFormat::setDefaultFormat(format);
}

/**
 * Makes the window a native and bare one under a Wayland compositor.
 *
 * Left alone, Qt looks for an X server unless the session calls itself a Wayland one, which that of
 * a compositor started by a service manager does not. It also draws a title bar where the
 * compositor does not, even on a window that the compositor has stretched over the whole screen
 * without calling it full screen.
 */
void prepareWindowSystem()
{
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        setDefaultVariable("QT_QPA_PLATFORM", "wayland;xcb"); // the first one that works
    setDefaultVariable("QT_WAYLAND_DISABLE_WINDOWDECORATION", "1");
}

} // namespace

void prepareEnvironment()
{
    // No other user may read settings, records and caches.
    umask(S_IRWXG | S_IRWXO);

    qputenv("QT_IM_MODULE", "qtvirtualkeyboard");
    // The keyboard is part of the main view and never opens its own window.
    qputenv("QT_VIRTUALKEYBOARD_DESKTOP_DISABLE", "1");
    qputenv("QML_XHR_ALLOW_FILE_READ", "0");
    qputenv("QML_XHR_ALLOW_FILE_WRITE", "0");
    // Without TZ the C library checks the zone file for every local time. ClockWatch does it once a
    // minute.
    setDefaultVariable("TZ", ":/etc/localtime");
    // By default Qt polls all network interfaces every 10 s. Nothing depends on that: requests
    // succeed or fail at the moment they are sent.
    setDefaultVariable("QT_BEARER_POLL_TIMEOUT", "86400000"); // ms
    prepareWindowSystem();
    prepareRendering();
    prepareColours();

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

QString InterfaceTranslator::translate(const char *context, const char *source, const char *comment,
                                       int n) const
{
    static const QSet<QByteArray> ofErrors {
        "QAbstractSocket",
        "QFile",
        "QFileDevice",
        "QHostInfoAgent",
        "QHttp",
        "QHttpSocketEngine",
        "QNativeSocketEngine",
        "QNetworkAccessDataBackend",
        "QNetworkAccessFileBackend",
        "QNetworkAccessManager",
        "QNetworkReply",
        "QNetworkReplyHttpImpl",
        "QNetworkReplyImpl",
        "QSslSocket",
        "QXml",
        "QXmlStream",
    };
    if (ofErrors.contains(context))
        return {};
    return QTranslator::translate(context, source, comment, n);
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
    // The styles also use these names. Without substitutes each system would choose its own fonts.
    QFont::insertSubstitution(QStringLiteral("MavenPro"), textFamily);
    QFont::insertSubstitution(QStringLiteral("Bandolino"), textFamily);
    QFont::insertSubstitution(QStringLiteral("Font Awesome"),
                              QStringLiteral("Font Awesome 5 Free"));
}

void registerMetaTypes()
{
    // Otherwise Qt registers these on first use, possibly in two threads at once.
    qRegisterMetaType<QNetworkReply::NetworkError>();
    qRegisterMetaType<QList<QSslError>>();
    qRegisterMetaType<QueueStatus>();

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

    // QML gets Config as a property of LBAPI, so no provider sets its ownership.
    QQmlEngine::setObjectOwnership(Config::instance(), QQmlEngine::CppOwnership);
}
