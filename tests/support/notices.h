// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "api/lbapi.h"
#include "support/logtrap.h"

#include <QCoreApplication>

/** The notifications on the screen. */
inline NotificationsModel &notices()
{
    return *LBAPI::instance()->notifications();
}

/** The newest notification, with all changes that other threads have posted. */
inline Notification *notice()
{
    QCoreApplication::sendPostedEvents(LBAPI::instance());
    return notices().newest();
}

/** Type and title of the newest notification; empty if there is none. */
inline QString shownNotice()
{
    const Notification *newest = notice();
    return newest ? "%1 %2"_s.arg(newest->type()).arg(newest->title()) : QString();
}
