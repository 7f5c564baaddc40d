// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/errortext.h"

#include "base/failure.h"

#include <QMetaEnum>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QRegularExpression>
#include <QSslCertificate>
#include <QSslError>
#include <QSslKey>
#include <QStringList>
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

QString withoutCredentials(QString text)
{
    static const QRegularExpression credentials(QStringLiteral("(Basic|Bearer)\\s+\\S+"),
                                                QRegularExpression::CaseInsensitiveOption);
    return text.replace(credentials, QStringLiteral("\\1 ********"));
}

namespace {

constexpr auto tlsErrors = "tlsErrors"; // property of a reply
constexpr int successClass = 2; // 200 to 299

int statusOf(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

QString describe(const QSslError &error)
{
    const QSslCertificate certificate = error.certificate();
    if (error.error() == QSslError::CertificateExpired)
        return QStringLiteral("%1 (on %2, is the clock right?)")
            .arg(error.errorString(), certificate.expiryDate().toString(Qt::ISODate));
    // Qt has no code for what OpenSSL's security level refuses.
    if (error.error() == QSslError::UnspecifiedError)
        return QStringLiteral("The certificate's key of %1 bits or its signature is too weak")
            .arg(certificate.publicKey().length());
    return error.errorString();
}

} // namespace

QString tlsErrorText(const QList<QSslError> &errors)
{
    QStringList texts;
    for (const QSslError &error : errors)
        texts.append(describe(error));
    texts.removeDuplicates();
    return texts.join(QLatin1String("; "));
}

void rememberTlsErrors(QNetworkReply &reply, const QList<QSslError> &errors)
{
    reply.setProperty(tlsErrors, tlsErrorText(errors));
}

QString errorText(const QNetworkReply &reply)
{
    constexpr int maxLength = 500; // a reason phrase can have any length

    QString text = reply.errorString();
    if (!reply.url().isEmpty())
        text.replace(reply.url().toString(), reply.url().toDisplayString());
    const QString tls = reply.property(tlsErrors).toString();
    if (!tls.isEmpty())
        text += QLatin1String(": ") + tls;
    return printableLine(withoutCredentials(text), maxLength);
}

QString networkError(const QNetworkReply &reply)
{
    const int status = statusOf(reply);
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

QString briefError(const QNetworkReply &reply)
{
    const int status = statusOf(reply);
    if (status != 0 && status / 100 != successClass)
        return QStringLiteral("HTTP %1").arg(status);
    if (reply.error() == QNetworkReply::NoError)
        return {};
    if (reply.error() == QNetworkReply::OperationCanceledError)
        return QStringLiteral("no answer in time");
    static const QRegularExpression capital(QStringLiteral("(?!^)([A-Z])"));
    const auto names = QMetaEnum::fromType<QNetworkReply::NetworkError>();
    QString words = QString::fromLatin1(names.valueToKey(reply.error()));
    words.remove(QStringLiteral("Error"));
    return words.replace(capital, QStringLiteral(" \\1")).toLower();
}

RecordOutcome outcomeOf(const QNetworkReply &reply)
{
    RecordOutcome outcome;
    outcome.status = statusOf(reply);
    outcome.hasResponse = outcome.status != 0;
    outcome.networkReason = briefError(reply);
    return outcome;
}
