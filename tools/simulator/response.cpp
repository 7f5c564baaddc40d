// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/response.h"

#include <QJsonDocument>

namespace simulator {
namespace {

    constexpr int oversizeBytes = 2'000'000; // the kiosk accepts 1 MiB
    constexpr int hostileRepeats = 5'000; // stays below that

} // namespace

Response textResponse(int status, const QString &text)
{
    return { status, "text/plain; charset=utf-8", text.toUtf8() + '\n' };
}

Response jsonResponse(int status, const QJsonObject &object)
{
    return { status, "application/json", QJsonDocument(object).toJson(QJsonDocument::Compact) };
}

Response spoiledJson(Response good, Fault fault, const char *wrongTypes, const QStringList &texts)
{
    if (fault == Fault::WrongRoot) {
        good.body = '[' + good.body + ']';
    } else if (fault == Fault::InvalidValue) {
        good.body = wrongTypes;
    } else if (fault == Fault::Oversize) {
        good.body += QByteArray(oversizeBytes, ' ');
    } else if (fault == Fault::HostileValues) {
        QJsonObject object = QJsonDocument::fromJson(good.body).object();
        const auto markup = QStringLiteral("<img src='http://127.0.0.1:9/'><b>Lang</b> ");
        for (const QString &key : texts)
            object.insert(key, markup.repeated(hostileRepeats));
        good.body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    }
    return good;
}

} // namespace simulator
