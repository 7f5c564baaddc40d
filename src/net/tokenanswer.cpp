// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/tokenanswer.h"

#include "base/exceptions.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <limits>

using namespace std::chrono_literals;

namespace {

QJsonObject parseObject(const QByteArray &body)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
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

/** Whether nothing in @p token could end the header line that will carry it. */
bool fitsHeader(const QString &token)
{
    return std::all_of(token.begin(), token.end(),
                       [](QChar each) { return each > QLatin1Char(' ') && each < QChar(0x7f); });
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

TokenAnswer parseTokenAnswer(const QByteArray &body)
{
    const QString accessToken = QStringLiteral("access_token");
    const QString expiresIn = QStringLiteral("expires_in");
    const QString refreshToken = QStringLiteral("refresh_token");
    const QString refreshExpiresIn = QStringLiteral("refresh_expires_in");

    const QJsonObject object = parseObject(body);
    TokenAnswer answer;

    requireKey(object, accessToken);
    answer.accessToken = readString(object, accessToken);
    if (answer.accessToken.isEmpty())
        throw KCException(QStringLiteral("\"%1\" is empty.").arg(accessToken));
    if (!fitsHeader(answer.accessToken))
        throw KCException(
            QStringLiteral("\"%1\" has characters that no header takes.").arg(accessToken));

    requireKey(object, expiresIn);
    answer.expiresIn = readInt(object, expiresIn);
    if (answer.expiresIn < 1)
        throw KCException(
            QStringLiteral("\"%1\" is too soon (%2).").arg(expiresIn).arg(answer.expiresIn));

    const auto isGiven = [&object](const QString &key) {
        const QJsonValue value = object.value(key);
        return !value.isUndefined() && !value.isNull();
    };
    if (!isGiven(refreshToken))
        return answer; // what stands beside it means nothing then
    answer.refreshToken = readString(object, refreshToken);
    if (isGiven(refreshExpiresIn))
        answer.refreshExpiresIn = readInt(object, refreshExpiresIn);
    return answer;
}

std::chrono::milliseconds renewalInterval(int expiresIn)
{
    // Nine tenths of the validity, then a tenth of that: several tries fit before the token ends.
    const std::chrono::seconds t(qint64(expiresIn) * 9 / 10);
    if (t > 6009s)
        return 600s;
    if (t < 250s)
        return 24s;
    return std::chrono::seconds(t.count() / 10); // whole seconds
}
