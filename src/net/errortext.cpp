// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/errortext.h"

#include <QNetworkReply>
#include <QRegularExpression>
#include <QUrl>

QString printableLine(QString text, int longest)
{
    text.truncate(longest);
    for (QChar &c : text) {
        if (!c.isPrint() && !c.isSurrogate())
            c = QLatin1Char(' ');
    }
    return text;
}

QString errorText(const QNetworkReply &reply)
{
    constexpr int longest = 500; // a server may answer with a reason of any length
    // The reason may also repeat the request's own header.
    static const QRegularExpression credentials(QStringLiteral("(Basic|Bearer)\\s+\\S+"),
                                                QRegularExpression::CaseInsensitiveOption);

    QString text = reply.errorString();
    if (!reply.url().isEmpty())
        text.replace(reply.url().toString(), reply.url().toDisplayString());
    text.replace(credentials, QStringLiteral("\\1 ********"));
    return printableLine(text, longest);
}
