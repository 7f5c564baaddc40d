// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class Notification;
class NotificationsModel;
class QObject;

/**
 * Shows notifications on the screen. The API object implements it, so that the workers need not
 * know the API.
 */
class NotificationBoard
{
public:
    NotificationBoard(const NotificationBoard &) = delete;
    NotificationBoard &operator=(const NotificationBoard &) = delete;

    /** The installed board. It lives in the GUI thread and outlives all other threads. */
    [[nodiscard]] static NotificationBoard &instance();

    /**
     * Shows @p notification as the newest one and takes ownership. Call it from the thread that
     * created the notification.
     */
    virtual void addNotification(Notification *notification) = 0;

    /** The notifications on the screen. GUI thread only. */
    [[nodiscard]] virtual NotificationsModel *notifications() = 0;

    /** The receiver of all calls posted to the GUI thread: a single one keeps their order. */
    [[nodiscard]] virtual QObject *context() = 0;

protected:
    /** Installs the new board, in the GUI thread, before any other thread starts. */
    NotificationBoard();
    virtual ~NotificationBoard();
};
