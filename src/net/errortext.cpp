// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/errortext.h"

#include <QNetworkReply>
#include <QUrl>

QString errorText(const QNetworkReply &reply)
{
    constexpr int longest = 500; // a server may answer with a reason of any length

    QString text = reply.errorString();
    if (!reply.url().isEmpty())
        text.replace(reply.url().toString(), reply.url().toDisplayString());
    for (QChar &c : text) {
        if (!c.isPrint())
            c = QLatin1Char(' ');
    }
    return text.left(longest);
}
