// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "notifications/notificationhandle.h"
#include "presence/tallyxlogentity.h"

#include <QCoreApplication>

class QObject;

/**
 * The notification of a presence booking: waits for the status, asks for the direction, and shows
 * the result. Used in the attendance worker's thread; every change is posted to the GUI thread.
 */
class TallyxNotice
{
    Q_DECLARE_TR_FUNCTIONS(TallyxNotice)

public:
    /**
     * Shows that the status is being queried. Calls the slots onButtonClicked(int), postLog() and
     * onNotificationRemoved() of @p flow.
     */
    explicit TallyxNotice(const QObject *flow);

    /**
     * Asks for the direction, with @p proposal marked. A press marks its button and restarts the
     * countdown of @p timeout ms. The GUI thread does that itself, so that the countdown cannot end
     * before this thread learns of the choice. A null title keeps the current one.
     */
    void ask(TallyxLogEntity::Type proposal, const QString &title, const QString &message,
             uint timeout) const;
    /** Shows that the booking is being sent: the choice is final. */
    void showSent(TallyxLogEntity::Type choice) const;
    /** Shows the response of the service. */
    void acknowledge(const QString &message, uint timeout) const;
    /** Shows a failure. */
    void fail(const QString &message, uint timeout) const;
    /** Removes the notification. */
    void withdraw() const;

private:
    NotificationHandle m_handle;
};
