// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "notifications/notificationhandle.h"
#include "presence/tallyxlogentity.h"

#include <QCoreApplication>

class QObject;

/**
 * What a person sees of a presence booking: one notification that waits, asks, and tells what
 * became of it. Used in the attendance worker's thread; all that it does is posted to the GUI
 * thread.
 */
class TallyxNotice
{
    Q_DECLARE_TR_FUNCTIONS(TallyxFlow)

public:
    /**
     * Shows that the status is being asked for. The slots onButtonClicked(int), postLog() and
     * onNotificationRemoved() of @p flow hear of the person.
     */
    explicit TallyxNotice(const QObject *flow);

    /**
     * Asks for the direction, with @p proposal marked. Each press marks its button and gives the
     * whole @p timeout (ms) again at once: a countdown must not overtake a choice on its way here.
     * A null title leaves the one that is shown.
     */
    void ask(TallyxLogEntity::Type proposal, const QString &title, const QString &message,
             uint timeout) const;
    /** The booking is on its way: nothing can be chosen any more. */
    void settle(TallyxLogEntity::Type choice) const;
    /** The service has booked it. */
    void acknowledge(const QString &message, uint timeout) const;
    /** It came to nothing, or will be sent later. */
    void fail(const QString &message, uint timeout) const;
    /** Takes the notification away. */
    void withdraw() const;

private:
    NotificationHandle m_handle;
};
