// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "notifications/notification.h"

#include <QPointer>

#include <functional>

/**
 * A notification on the screen, held by an object of another thread. Nothing is called through it:
 * changes are posted to the GUI thread in their order, and whether the notification still exists
 * is looked at there. Cheap to copy.
 */
class NotificationHandle
{
public:
    using Change = std::function<void(Notification &notification)>;

    /** None: changes are dropped. */
    NotificationHandle() = default;

    /** Shows @p notification, which was made in the calling thread and has no parent. */
    explicit NotificationHandle(Notification *notification);

    /**
     * Shows an error that belongs to nothing else on the screen, closable, for @p timeout ms. What
     * is the newest notification already only stays longer: a fault that repeats does not fill the
     * screen.
     */
    static void showError(const QString &title, const QString &message, uint timeout);

    /** Has the GUI thread call @p change, unless the notification is gone by then. */
    void change(const Change &change) const;

    /** The same; one that is gone, or never was, is replaced by what @p make returns there. */
    void changeOrShow(const std::function<Notification *()> &make, const Change &change) const;

    /** Whether the person has seen the last of it. What is true now may be false in a moment. */
    [[nodiscard]] bool isGone() const { return m_notification.isNull(); }

private:
    QPointer<Notification> m_notification;
};
