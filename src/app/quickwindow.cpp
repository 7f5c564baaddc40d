// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/quickwindow.h"

#include "api/lbapi.h"
#include "app/attendancethread.h"
#include "app/testnotification.h"
#include "config/config.h"
#include "config/keys.h"
#include "net/restrictednetworkaccessmanager.h"

#include <QCursor>
#include <QDebug>
#include <QGuiApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QQmlEngine>
#include <QScreen>

#include <algorithm>

std::unique_ptr<PendingWindowState> pendingWindowState;

namespace {

/** Stateless, and outlives every engine. */
RestrictedNetworkAccessManagerFactory *networkFactory()
{
    static RestrictedNetworkAccessManagerFactory factory;
    return &factory;
}

} // namespace

QuickWindow::QuickWindow(QWindow *parent)
    : QQuickView(parent)
{
    for (QTimer *timer : { &m_refreshTimer, &m_inactivityTimer }) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    engine()->setNetworkAccessManagerFactory(networkFactory());
    setTitle(QStringLiteral("Lumenboard"));
    setIcon(QIcon(QStringLiteral(":/icons/app.ico")));
    // The style's background: no white flash before the first frame or after an error.
    setColor(QColor(0x30, 0x30, 0x30));
}

QuickWindow::~QuickWindow()
{
    stopAttendanceThread();
}

void QuickWindow::reset()
{
    startFresh();
    LBAPI::instance()->emitReset();
    m_refreshTimer.start(Config::instance()->msecsToNextRefresh());
}

void QuickWindow::reload()
{
    startFresh();
    setSource(QUrl(QStringLiteral("qrc:/qml/views/Main.qml")));
    if (status() == QQuickView::Error)
        qCritical() << "Failed to load the user interface, trying again with the next reload";
    m_refreshTimer.start(Config::instance()->msecsToNextRefresh());
}

void QuickWindow::startFresh()
{
    // Before the new views load: a card read meanwhile is not meant for them.
    LBAPI::instance()->setScanTransponder(false);
    m_refreshTimer.stop();
    m_inactivityTimer.stop();
    engine()->clearComponentCache();
    LBAPI::instance()->refreshEventData();
}

bool QuickWindow::event(QEvent *e)
{
    if (e->type() == QEvent::LanguageChange)
        engine()->retranslate();
    return QQuickView::event(e);
}

void QuickWindow::keyPressEvent(QKeyEvent *e)
{
    const auto action = serviceAction(e);
    if (!action) {
        QQuickView::keyPressEvent(e);
        return;
    }
    e->accept();
    // A key that is held down acts once: repeated refreshes would end each other's download.
    if (!e->isAutoRepeat())
        action();
}

/**
 * What the key does, or null if it is no service key. The order matters: a platform key sequence
 * may equal one of the fixed keys below it.
 */
std::function<void()> QuickWindow::serviceAction(const QKeyEvent *e)
{
    constexpr Qt::KeyboardModifiers everyModifier
        = Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier;
    const auto isKey = [e](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        return e->key() == key && e->modifiers() == modifiers;
    };

    if (e->matches(QKeySequence::Refresh))
        return [this] { reload(); };
    if (isKey(Qt::Key_F5, Qt::ControlModifier))
        return [this] { rebuild(); };
    // Without a desktop environment the platform binds no key to full screen.
    if (e->matches(QKeySequence::FullScreen) || isKey(Qt::Key_F11, Qt::NoModifier))
        return [this] { toggleFullScreen(); };
    if (isKey(Qt::Key_F11, Qt::ShiftModifier))
        return [this] { showCentred(); };
    if (isKey(Qt::Key_F11, Qt::AltModifier))
        return [this] { showOnSecondScreen(); };
    if (isKey(Qt::Key_F12, Qt::ShiftModifier))
        return [this] { toggleMouseCursor(); };
    if (e->matches(QKeySequence::Quit))
        return [this] { close(); };
    if (isKey(Qt::Key_N, everyModifier))
        return [] { LBAPI::instance()->addNotification(makeTestNotification()); };
    if (e->modifiers() == everyModifier)
        return [] {}; // not for the views
    return {};
}

void QuickWindow::applyHideMouseCursor(bool hide)
{
    if (hide == (QGuiApplication::overrideCursor() != nullptr))
        return;
    if (hide)
        QGuiApplication::setOverrideCursor(QCursor(Qt::BlankCursor));
    else
        QGuiApplication::restoreOverrideCursor();
}

void QuickWindow::setHideMouseCursor(bool v)
{
    applyHideMouseCursor(v);
}

void QuickWindow::setInactivityTimeout(int secs)
{
    m_inactivityTimer.setInterval(secs * 1000);
}

void QuickWindow::rebuild()
{
    LBAPI::instance()->setScanTransponder(false);
    pendingWindowState = std::make_unique<PendingWindowState>();
    *pendingWindowState = { windowState(), geometry() };
    close();
}

void QuickWindow::toggleFullScreen()
{
    setWindowState(windowState() == Qt::WindowFullScreen ? Qt::WindowNoState
                                                         : Qt::WindowFullScreen);
}

void QuickWindow::showCentred()
{
    constexpr QSize maxSize(1920, 1200);

    leaveFullScreen();
    QRect available = screen()->availableGeometry();
    const auto siblings = screen()->virtualSiblings();
    const auto shown = std::find_if(siblings.cbegin(), siblings.cend(), [this](const QScreen *s) {
        return s->geometry().intersects(geometry());
    });
    if (shown != siblings.cend())
        available = (*shown)->availableGeometry();
    QRect centred(QPoint(), available.size().boundedTo(maxSize));
    centred.moveCenter(available.center());
    setGeometry(centred);
}

void QuickWindow::showOnSecondScreen()
{
    // Deliberately not centred: technicians recognise the window by its place.
    constexpr double offset = 0.16;
    constexpr double share = 0.66;

    leaveFullScreen();
    const auto siblings = screen()->virtualSiblings();
    const QRect available = siblings.at(siblings.size() > 1 ? 1 : 0)->availableGeometry();
    setGeometry(static_cast<int>(available.x() + offset * available.width()),
                static_cast<int>(available.y() + offset * available.height()),
                static_cast<int>(share * available.width()),
                static_cast<int>(share * available.height()));
}

void QuickWindow::leaveFullScreen()
{
    if (windowState() == Qt::WindowFullScreen)
        setWindowState(Qt::WindowNoState);
}

void QuickWindow::toggleMouseCursor()
{
    Config *config = Config::instance();
    const bool hide = !config->hideMouseCursor();
    if (config->setIfChanged(keys::hideMouseCursor, hide))
        Q_EMIT config->hideMouseCursorChanged(hide);
}
