// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/errortext.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QRegularExpression>
#include <QUrl>

QString printableLine(QString text, int maxLength)
{
    text.truncate(maxLength);
    for (QChar &c : text) {
        if (!c.isPrint() && !c.isSurrogate())
            c = QLatin1Char(' ');
    }
    return text;
}

QString errorText(const QNetworkReply &reply)
{
    constexpr int maxLength = 500; // a reason phrase can have any length
    // A reason phrase may echo the request's Authorization header.
    static const QRegularExpression credentials(QStringLiteral("(Basic|Bearer)\\s+\\S+"),
                                                QRegularExpression::CaseInsensitiveOption);

    QString text = reply.errorString();
    if (!reply.url().isEmpty())
        text.replace(reply.url().toString(), reply.url().toDisplayString());
    text.replace(credentials, QStringLiteral("\\1 ********"));
    return printableLine(text, maxLength);
}

QString networkError(const QNetworkReply &reply)
{
    constexpr int successClass = 2; // 200 to 299

    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    int error = reply.error();
    QString text = errorText(reply);
    if (error == QNetworkReply::NoError) {
        if (status / 100 == successClass)
            return {};
        error = QNetworkReply::UnknownContentError;
        text = QStringLiteral("unexpected HTTP status %1").arg(status);
    }
    return QStringLiteral("Network error: %1 %2").arg(QString::number(error), text);
}
