// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QQuickView>
#include <QRect>
#include <QTimer>

#include <memory>

/** State and place of a window that is torn down to be built again. */
struct PendingWindowState
{
    Qt::WindowState state = Qt::WindowNoState;
    QRect geometry;
};

/** Set by the window when it closes itself for a rebuild, taken by the next window pass. */
extern std::unique_ptr<PendingWindowState> pendingWindowState;

/**
 * The one top-level window: shows the main view and keeps the rhythm of the screen.
 *
 * While nobody touches the screen the refresh timer returns to the start view with fresh data at
 * each point of the refresh grid. A touch stops it, and the inactivity timer does the same once
 * after the last touch. Technicians have service keys. GUI thread.
 */
class QuickWindow : public QQuickView
{
    Q_OBJECT

public:
    explicit QuickWindow(QWindow *parent = nullptr);
    /** Ends the thread that reads cards. */
    ~QuickWindow() override;

    /** Hides the mouse cursor over every window of the program, or shows it again. */
    static void applyHideMouseCursor(bool hide);

    [[nodiscard]] QTimer *refreshTimer() { return &m_refreshTimer; }
    [[nodiscard]] QTimer *inactivityTimer() { return &m_inactivityTimer; }

public Q_SLOTS:
    /** Back to the start view, with fresh schedule data. */
    void reset();
    /** Loads the whole user interface anew, with fresh schedule data. */
    void reload();

protected:
    bool event(QEvent *e) override;
    void keyPressEvent(QKeyEvent *e) override;

private Q_SLOTS:
    void setHideMouseCursor(bool v);
    void setInactivityTimeout(int secs);

private:
    [[nodiscard]] bool handleServiceKey(const QKeyEvent *e);
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
