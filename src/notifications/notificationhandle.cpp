// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "notifications/notificationhandle.h"

#include "notifications/notificationboard.h"
#include "notifications/notificationsmodel.h"

NotificationHandle::NotificationHandle(Notification *notification)
    : m_notification(notification)
{
    NotificationBoard::instance().addNotification(notification);
}

void NotificationHandle::showError(const QString &title, const QString &message, uint timeout)
{
    NotificationBoard *board = &NotificationBoard::instance();
    QMetaObject::invokeMethod(
        board->context(),
        [=] {
            Notification *newest = board->notifications()->newest();
            const bool isRepeated = newest && newest->type() == Notification::ERR
                && newest->title() == title && newest->message() == message;
            if (!isRepeated)
                board->addNotification(
                    new Notification(Notification::ERR, title, message, timeout, true, true));
            else if (newest->timeout() > 0) // nobody has stopped its countdown
                newest->setTimeout(timeout);
        },
        Qt::QueuedConnection);
}

void NotificationHandle::showFatalError(const QString &title, const QString &message)
{
    auto *notification = new Notification(Notification::ERR, title, message, 0, false, true);
    notification->setPermanent();
    NotificationBoard::instance().addNotification(notification);
}

void NotificationHandle::change(const Change &change) const
{
    changeOrShow([] { return nullptr; }, change);
}

void NotificationHandle::changeOrShow(const std::function<Notification *()> &make,
                                      const Change &change) const
{
    NotificationBoard *board = &NotificationBoard::instance();
    QMetaObject::invokeMethod(
        board->context(),
        [board, notification = m_notification, make, change] {
            Notification *shown = notification;
            if (!shown || !board->notifications()->contains(shown)) {
                shown = make();
                if (!shown)
                    return;
                board->addNotification(shown);
            }
            change(*shown);
        },
        Qt::QueuedConnection);
}
