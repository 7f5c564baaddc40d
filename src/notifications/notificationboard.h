// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class Notification;
class NotificationsModel;
class QObject;

/**
 * Shows notifications on the screen. The API object is the board and installs itself, so that
 * whoever has something to say needs nothing of the API.
 */
class NotificationBoard
{
public:
    NotificationBoard(const NotificationBoard &) = delete;
    NotificationBoard &operator=(const NotificationBoard &) = delete;

    /** The installed board. It lives in the GUI thread and outlives all other threads. */
    [[nodiscard]] static NotificationBoard &instance();

    /**
     * Shows @p notification as the newest one and takes it over. Callable from the thread in which
     * the notification was made.
     */
    virtual void addNotification(Notification *notification) = 0;

    /** The notifications on the screen. GUI thread only. */
    [[nodiscard]] virtual NotificationsModel *notifications() = 0;

    /** The receiver of calls that are posted to the GUI thread; one receiver keeps their order. */
    [[nodiscard]] virtual QObject *context() = 0;

protected:
    /** Installs the new board, in the GUI thread, before any other thread starts. */
    NotificationBoard();
    virtual ~NotificationBoard();
};
