// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/tokenresponse.h"

#include "base/exceptions.h"
#include "base/json.h"
#include "net/errortext.h"

#include <QIODevice>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <limits>

using namespace std::chrono_literals;

namespace {

QJsonObject parseObject(const QByteArray &body)
{
    QJsonParseError error;
    const QJsonDocument document = readJson(body, &error);
    if (error.error != QJsonParseError::NoError)
        throw KCException(QStringLiteral("Failed to read JSON: %1").arg(error.errorString()));
    if (document.isNull() || (document.isObject() && document.object().isEmpty()))
        throw KCException(QStringLiteral("JSON is empty."));
    if (!document.isObject())
        throw KCException(QStringLiteral("Response is not an object."));
    return document.object();
}

void requireKey(const QJsonObject &object, const QString &key)
{
    if (!object.contains(key))
        throw KCException(QStringLiteral("JSON object does not contain \"%1\".").arg(key));
}

QString readString(const QJsonObject &object, const QString &key)
{
    const QJsonValue value = object.value(key);
    if (!value.isString())
        throw KCException(QStringLiteral("\"%1\" is not a string.").arg(key));
    return value.toString();
}

/** True if @p token is visible ASCII only: a line break would end the header that carries it. */
bool fitsHeader(const QString &token)
{
    return std::all_of(token.begin(), token.end(),
                       [](QChar c) { return c > QLatin1Char(' ') && c < QChar(0x7f); });
}

int readInt(const QJsonObject &object, const QString &key)
{
    const QJsonValue value = object.value(key);
    if (!value.isDouble())
        throw KCException(QStringLiteral("\"%1\" is not a number.").arg(key));
    const double number = value.toDouble();
    const bool fits = number >= std::numeric_limits<qint32>::min()
        && number <= std::numeric_limits<qint32>::max();
    if (!fits || number != static_cast<qint32>(number))
        throw KCException(QStringLiteral("\"%1\" is not an int (%2).").arg(key).arg(number));
    return static_cast<qint32>(number);
}

} // namespace

TokenResponse parseTokenResponse(const QByteArray &body)
{
    const QString accessToken = QStringLiteral("access_token");
    const QString expiresIn = QStringLiteral("expires_in");
    const QString refreshToken = QStringLiteral("refresh_token");
    const QString refreshExpiresIn = QStringLiteral("refresh_expires_in");

    const QJsonObject object = parseObject(body);
    TokenResponse response;

    requireKey(object, accessToken);
    response.accessToken = readString(object, accessToken);
    if (response.accessToken.isEmpty())
        throw KCException(QStringLiteral("\"%1\" is empty.").arg(accessToken));
    if (!fitsHeader(response.accessToken))
        throw KCException(
            QStringLiteral("\"%1\" has characters that no header takes.").arg(accessToken));

    requireKey(object, expiresIn);
    response.expiresIn = readInt(object, expiresIn);
    if (response.expiresIn < 1)
        throw KCException(
            QStringLiteral("\"%1\" is too soon (%2).").arg(expiresIn).arg(response.expiresIn));

    const auto isGiven = [&object](const QString &key) {
        const QJsonValue value = object.value(key);
        return !value.isUndefined() && !value.isNull();
    };
    if (!isGiven(refreshToken))
        return response; // without a token its validity has no meaning
    response.refreshToken = readString(object, refreshToken);
    if (isGiven(refreshExpiresIn))
        response.refreshExpiresIn = readInt(object, refreshExpiresIn);
    return response;
}

QString refusalReason(QIODevice &reply)
{
    constexpr int maxLength = 200;
    if (!reply.isReadable())
        return {}; // aborted
    const QJsonObject object = readJson(reply.readAll()).object();
    QString reason = object.value(QLatin1String("error")).toString();
    if (reason.isEmpty())
        return {};
    const QString description = object.value(QLatin1String("error_description")).toString();
    if (!description.isEmpty())
        reason += QLatin1String(": ") + description;
    return QStringLiteral(" [%1]").arg(
        printableLine(withoutCredentials(reason.left(maxLength)), maxLength));
}

std::chrono::milliseconds renewalInterval(int expiresIn)
{
    // The interval is a tenth of t, so several attempts fit before the token expires.
    const std::chrono::seconds t(qint64(expiresIn) * 9 / 10);
    if (t > 6009s)
        return 600s;
    if (t < 250s)
        return 24s;
    return std::chrono::seconds(t.count() / 10); // whole seconds
}
