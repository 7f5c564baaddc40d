// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QString>

class QNetworkReply;

/**
 * Why something failed, in one sentence for the person at the screen and the staff: whether to look
 * at the network, the service or this device. In the language of the interface, without addresses,
 * paths or Qt's texts, which belong in the log. All notices take their reason from here, so that a
 * fault reads the same everywhere. Any thread.
 */
class Reason
{
    Q_DECLARE_TR_FUNCTIONS(Reason)

public:
    /** Why the request of @p reply failed; only for a finished reply without a usable response. */
    [[nodiscard]] static QString ofReply(const QNetworkReply &reply);
    /** The same for an HTTP status: 0 if no response came, 2xx if its content is useless. */
    [[nodiscard]] static QString ofStatus(int status);
    /** Why the disk refuses a change; @p error is a value of errno. */
    [[nodiscard]] static QString ofDisk(int error);
};
