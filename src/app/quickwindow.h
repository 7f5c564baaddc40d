// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QQuickView>
#include <QRect>
#include <QTimer>

#include <functional>
#include <memory>

/** State and geometry of a window that is about to be rebuilt. */
struct PendingWindowState
{
    Qt::WindowState state = Qt::WindowNoState;
    QRect geometry;
};

/** Set by a window that closes for a rebuild; taken by the next window pass. */
extern std::unique_ptr<PendingWindowState> pendingWindowState;

/**
 * The only top-level window: shows the main view, refreshes it and handles the service keys.
 *
 * While nobody touches the screen, the refresh timer returns to the start view with fresh data at
 * each point of the refresh grid. A touch stops it; the inactivity timer then does the same once,
 * some time after the last touch. GUI thread.
 */
class QuickWindow : public QQuickView
{
    Q_OBJECT

public:
    explicit QuickWindow(QWindow *parent = nullptr);
    /** Stops the attendance thread. */
    ~QuickWindow() override;

    /** Hides or shows the mouse cursor over all windows of the program. */
    static void applyHideMouseCursor(bool hide);

    [[nodiscard]] QTimer *refreshTimer() { return &m_refreshTimer; }
    [[nodiscard]] QTimer *inactivityTimer() { return &m_inactivityTimer; }

public Q_SLOTS:
    /** Returns to the start view, with fresh schedule data. */
    void reset();
    /** Reloads the whole user interface, with fresh schedule data. */
    void reload();

protected:
    bool event(QEvent *e) override;
    void keyPressEvent(QKeyEvent *e) override;

private Q_SLOTS:
    void setHideMouseCursor(bool v);
    void setInactivityTimeout(int secs);

private:
    [[nodiscard]] std::function<void()> serviceAction(const QKeyEvent *e);
    void startFresh();
    void rebuild();
    void toggleFullScreen();
    void showCentred();
    void showOnSecondScreen();
    void leaveFullScreen();
    void toggleMouseCursor();

    QTimer m_refreshTimer;
    QTimer m_inactivityTimer;
};
