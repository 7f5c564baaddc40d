// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/windowpass.h"

#include "api/lbapi.h"
#include "app/attendancethread.h"
#include "app/exitwatchdog.h"
#include "app/inputeventmonitor.h"
#include "app/instanceguard.h"
#include "app/quickwindow.h"
#include "app/screens.h"
#include "app/servicereport.h"
#include "app/terminationsignals.h"
#include "base/connections.h"
#include "config/config.h"
#include "status/kioskstatus.h"
#include "supervision/servicemanager.h"

#include <QDebug>
#include <QGuiApplication>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQmlEngine>

#include <utility>

namespace {

/** Tells a technician what the picture depends on. Runs in the thread that draws. */
void logDisplay(const QString &platform)
{
    const QOpenGLContext *context = QOpenGLContext::currentContext();
    const char *renderer = context
        ? reinterpret_cast<const char *>(context->functions()->glGetString(GL_RENDERER))
        : "software without OpenGL";
    qInfo().noquote() << "Display:" << platform << "drawn by" << renderer;
}

void showWindow(QuickWindow &window)
{
    if (!pendingWindowState) {
        window.showFullScreen();
        return;
    }
    window.show();
    const auto pending = std::exchange(pendingWindowState, nullptr);
    window.setWindowState(pending->state);
    window.setGeometry(pending->geometry);
}

bool isLastPass()
{
    return !pendingWindowState || TerminationSignals::isRequested();
}

int runWindowPass(const TerminationSignals &termination, const InstanceGuard &guard)
{
    QuickWindow window;
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    auto *monitor = new InputEventMonitor(&window);
    QCoreApplication::instance()->installEventFilter(monitor);
    QuickWindow::applyHideMouseCursor(Config::instance()->hideMouseCursor());
    wireWindow(window, *monitor);
    QObject::connect(&termination, &TerminationSignals::requested, &window, &QuickWindow::close);
    QObject::connect(
        &window, &QQuickWindow::sceneGraphInitialized, &window,
        [platform = QGuiApplication::platformName()] { logDisplay(platform); },
        Qt::DirectConnection);
    LBAPI::instance()->setInactivityTimer(window.inactivityTimer());

    if (guard.isFirst())
        startAttendanceThread();
    else
        QObject::connect(&guard, &InstanceGuard::becameFirst, &window, &startAttendanceThread);
    window.reload();
    reportToServiceManager(window);
    showWindow(window);
    screens::follow(window);
    screens::logTouchPanels();
    QObject::connect(window.refreshTimer(), &QTimer::timeout, &window, &screens::logTouchPanels);
    const int code = QGuiApplication::exec();
    if (isLastPass()) {
        servicemanager::stopping();
        exitwatchdog::limitTimeToEnd();
    }
    return code;
}

} // namespace

int runWindowPasses(const TerminationSignals &termination)
{
    // Never destroyed: a worker that was left behind may use the records as long as the process
    // runs.
    const auto *guard = new InstanceGuard(QCoreApplication::instance());
    KioskStatus *status = KioskStatus::instance();
    if (guard->isFirst())
        status->begin();
    else
        QObject::connect(guard, &InstanceGuard::becameFirst, status, &KioskStatus::begin);
    int code = 0;
    do {
        code = runWindowPass(termination, *guard);
    } while (!isLastPass());
    status->end();
    return code;
}

void wireWindow(QuickWindow &window, InputEventMonitor &monitor)
{
    Config *config = Config::instance();
    QTimer *refresh = window.refreshTimer();
    QTimer *inactivity = window.inactivityTimer();

    connectChecked(window.engine(), SIGNAL(quit()), &window, SLOT(close()));
    connectChecked(config,
                   SIGNAL(hideMouseCursorChanged(bool)), &window, SLOT(setHideMouseCursor(bool)));
    connectChecked(config,
                   SIGNAL(inactivityTimeoutChanged(int)), &window, SLOT(setInactivityTimeout(int)));
    const auto applyInactivityTimeout
        = [config, inactivity] { inactivity->setInterval(config->inactivityTimeout() * 1000); };
    applyInactivityTimeout();
    // Before the reload, so that it already uses the new interval.
    QObject::connect(config, &Config::configChanged, inactivity, applyInactivityTimeout);
    QObject::connect(config, &Config::configChanged, &window, &QuickWindow::reload);

    QObject::connect(refresh, &QTimer::timeout, &window, &QuickWindow::reset);
    QObject::connect(inactivity, &QTimer::timeout, &window, &QuickWindow::reset);
    connectChecked(&monitor, SIGNAL(inputEvent()), refresh, SLOT(stop()));
    connectChecked(&monitor, SIGNAL(inputEvent()), inactivity, SLOT(start()));
}
