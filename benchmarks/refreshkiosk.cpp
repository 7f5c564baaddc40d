// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/lbapi.h"
#include "app/inputeventmonitor.h"
#include "app/quickwindow.h"
#include "app/startup.h"
#include "app/windowpass.h"
#include "config/config.h"
#include "refreshloop.h"

#include <QGuiApplication>

/** The kiosk, refreshed continuously. */
int main(int argc, char *argv[])
{
    RefreshLoop::countObjects();
    prepareEnvironment();
    const QGuiApplication app(argc, argv);
    nameApplication();
    Config::instance();
    setGermanLocale();
    Translations translations;
    translations.install();
    loadFonts();
    registerMetaTypes();
    registerQmlTypes();

    QuickWindow window;
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    InputEventMonitor monitor;
    wireWindow(window, monitor);
    window.reload();
    window.showFullScreen();

    RefreshLoop loop(
        &window, [&window] { window.reset(); }, QGuiApplication::arguments().value(1).toInt());
    bool started = false;
    // Queued, so that it runs once per schedule after all other receivers.
    QObject::connect(
        Config::instance(), &Config::locationChanged, &loop,
        [&loop, &started] {
            if (LBAPI::instance()->eventData()->error())
                QCoreApplication::exit(EXIT_FAILURE);
            else if (started)
                loop.refreshed();
            else
                loop.start();
            started = true;
        },
        Qt::QueuedConnection);
    return QGuiApplication::exec();
}
