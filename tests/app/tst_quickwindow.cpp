// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/lbapi.h"
#include "app/inputeventmonitor.h"
#include "app/quickwindow.h"
#include "app/screens.h"
#include "app/terminationsignals.h"
#include "app/windowpass.h"
#include "support/testcase.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>

#include <csignal>

using namespace simulator;

class TestQuickWindow : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void keepsTheRhythm_data()
    {
        columns<QString>("act");
        for (const char *act : { "reload", "reset", "refresh fires", "inactivity fires", "F5" })
            row(act, act);
    }

    void keepsTheRhythm()
    {
        const QString act = at("act");
        const auto window = makeWindow();
        QTimer *refresh = window->refreshTimer();
        QTimer *inactivity = window->inactivityTimer();
        QVERIFY(refresh->isSingleShot() && inactivity->isSingleShot());
        QCOMPARE(inactivity->interval(), 60000);
        inactivity->start();
        LBAPI::instance()->setScanTransponder(true);
        bool scansForNewViews = false;
        connect(window.get(), &QQuickView::statusChanged, this,
                [&] { scansForNewViews = LBAPI::instance()->scanTransponder(); });
        const QSignalSpy resets(LBAPI::instance(), &LBAPI::reset);
        if (act == "F5"_s)
            press(*window, Qt::Key_F5);
        else if (act.contains(QLatin1Char(' ')))
            QMetaObject::invokeMethod(act.startsWith("refresh"_s) ? refresh : inactivity,
                                      "timeout");
        else
            QMetaObject::invokeMethod(window.get(), qPrintable(act));
        const bool reloads = act == "F5"_s || act == "reload"_s;
        QCOMPARE(resets.count(), reloads ? 0 : 1);
        QCOMPARE(window->rootObject() != nullptr, reloads);
        QVERIFY(refresh->isActive() && refresh->interval() > 9999);
        QVERIFY(!inactivity->isActive());
        const QPointer<EventData> loading = LBAPI::instance()->eventData();
        press(*window, Qt::Key_F5, {}, true); // held down
        QCOMPARE(LBAPI::instance()->eventData(), loading);
        QVERIFY(!scansForNewViews && !LBAPI::instance()->scanTransponder());
        QTRY_COMPARE(services().requestCount(Route::Schedule), 1);

        Q_EMIT window->findChild<InputEventMonitor *>()->inputEvent();
        QVERIFY(!refresh->isActive() && inactivity->isActive());
    }

    void followsTheSettings()
    {
        const auto window = makeWindow();
        settings::set("inactivityTimeout"_s, 20);
        Q_EMIT Config::instance()->configChanged();
        QCOMPARE(window->inactivityTimer()->interval(), 20000);
        QVERIFY(window->rootObject());
        QTRY_COMPARE(services().requestCount(Route::Schedule), 1);
        Q_EMIT Config::instance()->inactivityTimeoutChanged(5);
        QCOMPARE(window->inactivityTimer()->interval(), 5000);
    }

    void triesAgainAfterALoadError()
    {
        const auto window = makeWindow();
        Q_CLEANUP_RESOURCE(views);
        log().expect("Failed to load the user interface"_s);
        log().expect("qrc:/qml/views/Main.qml"_s);
        window->reload();
        Q_INIT_RESOURCE(views);
        QCOMPARE(window->status(), QQuickView::Error);
        QVERIFY(window->refreshTimer()->isActive());
        window->reload();
        QCOMPARE(window->status(), QQuickView::Ready);
    }

    void followsTheScreen()
    {
        const auto window = makeWindow();
        screens::follow(*window);
        window->setWindowState(Qt::WindowFullScreen);
        window->setGeometry(1, 2, 30, 40); // as if the screen had been smaller
        log().expect("The screen"_s);
        Q_EMIT window->screen()->geometryChanged({});
        QCOMPARE(window->geometry(), window->screen()->geometry());
    }

    void togglesTheCursor()
    {
        const auto window = makeWindow();
        QuickWindow::applyHideMouseCursor(true);
        QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::BlankCursor);
        for (const bool hides : { false, true }) {
            press(*window, Qt::Key_F12, Qt::ShiftModifier);
            QCOMPARE(QGuiApplication::overrideCursor() != nullptr, hides);
            QCOMPARE(settings::own().contains("hideMouseCursor=false"_s), !hides);
        }
        QuickWindow::applyHideMouseCursor(false);
    }

    void isRebuiltUntilASignalEndsTheProgram()
    {
        log().allow("Failed to load name cache: failed to open"_s);
        log().allow("No serial port found."_s);
        log().allow("No touch panel found."_s);
        services();
        const QPointer<LBAPI> api = LBAPI::instance();
        const TerminationSignals termination;
        const QRect place(10, 20, 300, 200);
        QRect lastPlace;
        QStringList seen;
        QTimer steps; // one step in each pass, once the window is shown
        connect(&steps, &QTimer::timeout, this, [&] {
            const auto windows = QGuiApplication::topLevelWindows();
            auto *window = qobject_cast<QuickWindow *>(windows.value(0));
            if (!window || !window->isVisible() || !window->rootObject())
                return;
            seen.append("%1 %2 %3 %4"_s.arg(window->windowState())
                            .arg(QGuiApplication::overrideCursor() ? "hidden"_s : "shown"_s)
                            .arg(window->rootObject()->property("token").toString())
                            .arg(window->rootObject()->property("notices").toInt()));
            lastPlace = window->geometry();
            if (seen.size() == 3) {
                steps.stop();
                std::raise(SIGTERM);
                return;
            }
            if (seen.size() == 2) {
                press(*window, Qt::Key_F11);
                window->setGeometry(place);
            }
            api->setAccessToken("token"_s);
            api->addNotification(new Notification);
            press(*window, Qt::Key_F5, Qt::ControlModifier);
        });
        steps.start();
        QCOMPARE(runWindowPasses(termination), 0);
        const QStringList expected { "4 hidden  0"_s, "4 hidden token 1"_s, "0 hidden token 2"_s };
        QCOMPARE(seen, expected);
        QCOMPARE(lastPlace, place);
        QVERIFY(termination.isRequested() && !pendingWindowState);
        QCOMPARE(LBAPI::instance(), api);
        QuickWindow::applyHideMouseCursor(false);
    }

private:
    /** A connected window with services that has not loaded its interface yet. */
    std::unique_ptr<QuickWindow> makeWindow()
    {
        services();
        auto window = std::make_unique<QuickWindow>();
        wireWindow(*window, *new InputEventMonitor(window.get()));
        return window;
    }

    static void press(QuickWindow &window, Qt::Key key, Qt::KeyboardModifiers modifiers = {},
                      bool isRepeated = false)
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, {}, isRepeated);
        QCoreApplication::sendEvent(&window, &event);
    }
};

static const RegisterTest<TestQuickWindow> registered;

#include "tst_quickwindow.moc"
