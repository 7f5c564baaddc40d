// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/notificationhandle.h"

#include "api/lbapi.h"

NotificationHandle::NotificationHandle(Notification *notification)
    : m_notification(notification)
{
    LBAPI::instance()->addNotification(notification);
}

void NotificationHandle::showError(const QString &title, const QString &message, uint timeout)
{
    LBAPI *api = LBAPI::instance();
    QMetaObject::invokeMethod(
        api,
        [=] {
            NotificationsModel *model = api->notifications();
            auto *newest = model->data(model->index(0), NotificationsModel::DataRole)
                               .value<Notification *>();
            if (newest && newest->type() == Notification::ERR && newest->title() == title
                && newest->message() == message)
                newest->setTimeout(timeout);
            else
                api->addNotification(
                    new Notification(Notification::ERR, title, message, timeout, true, true));
        },
        Qt::QueuedConnection);
}

void NotificationHandle::change(const Change &change) const
{
    changeOrShow([] { return nullptr; }, change);
}

void NotificationHandle::changeOrShow(const std::function<Notification *()> &make,
                                      const Change &change) const
{
    LBAPI *api = LBAPI::instance();
    QMetaObject::invokeMethod(
        api,
        [api, notification = m_notification, make, change] {
            Notification *shown = notification;
            if (!shown || !api->notifications()->contains(shown)) {
                shown = make();
                if (!shown)
                    return;
                api->addNotification(shown);
            }
            change(*shown);
        },
        Qt::QueuedConnection);
}
