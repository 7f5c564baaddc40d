// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/screens.h"

#include "app/quickwindow.h"

#include <QDebug>
#include <QGuiApplication>
#include <QScreen>
#include <QTouchDevice>

#include <optional>

namespace {

void fill(QuickWindow *window)
{
    const QScreen *screen = window->screen();
    if (!screen || window->windowState() != Qt::WindowFullScreen
        || window->geometry() == screen->geometry())
        return;
    qInfo() << "The screen" << screen->name() << "is now" << screen->geometry();
    window->setGeometry(screen->geometry());
}

} // namespace

void screens::follow(QuickWindow &window)
{
    const auto watch = [window = &window](QScreen *screen) {
        QObject::connect(screen, &QScreen::geometryChanged, window, [window] { fill(window); });
    };
    const auto screens = QGuiApplication::screens();
    for (QScreen *screen : screens)
        watch(screen);
    QObject::connect(qApp, &QGuiApplication::screenAdded, &window, watch);
    QObject::connect(&window, &QWindow::screenChanged, &window, [&window] { fill(&window); });
}

void screens::logTouchPanels()
{
    static std::optional<QStringList> logged;
    QStringList names;
    for (const QTouchDevice *device : QTouchDevice::devices()) {
        if (device->type() == QTouchDevice::TouchScreen)
            names.append(device->name());
    }
    if (logged == names)
        return;
    logged = names;
    if (names.isEmpty())
        qWarning() << "No touch panel found.";
    else
        qInfo() << "Touch panel:" << names;
}
