// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "notifications/notification.h"

#include <QPointer>

#include <functional>

/**
 * Changes a notification on the screen from another thread. Posts the changes to the GUI thread in
 * order and drops them if the notification is gone by then. Cheap to copy.
 */
class NotificationHandle
{
public:
    using Change = std::function<void(Notification &notification)>;

    /** Holds no notification and drops changes. */
    NotificationHandle() = default;

    /** Shows @p notification, which must have no parent and belong to the calling thread. */
    explicit NotificationHandle(Notification *notification);

    /**
     * Shows a closable error for @p timeout ms. If the newest notification is the same error,
     * restarts its countdown instead, unless a person has stopped it: a repeated fault must not
     * fill the screen.
     */
    static void showError(const QString &title, const QString &message, uint timeout);

    /** Shows an error that stays until somebody closes it, whatever else is shown. */
    static void showFatalError(const QString &title, const QString &message);

    /** Calls @p change in the GUI thread, unless the notification is gone by then. */
    void change(const Change &change) const;

    /** Like change(), but first replaces a missing notification by the result of @p make. */
    void changeOrShow(const std::function<Notification *()> &make, const Change &change) const;

    /** True if the notification has been deleted. A false may be outdated at once. */
    [[nodiscard]] bool isGone() const { return m_notification.isNull(); }

private:
    QPointer<Notification> m_notification;
};
