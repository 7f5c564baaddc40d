// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/registrationroute.h"

#include "simulator/cardholders.h"
#include "simulator/registrationstatusroute.h"
#include "simulator/strictforms.h"
#include "simulator/tokenroute.h"

#include <QJsonDocument>

#include <algorithm>

namespace simulator {
namespace {

    /// The service refuses in words for the person, with a status that says it was understood.
    Answer outcome(const QJsonValue &error, const QString &name, const QString &message)
    {
        QJsonObject object { { QStringLiteral("error"), error },
                             { QStringLiteral("message"), message } };
        if (!name.isEmpty())
            object.insert(QStringLiteral("name"), name);
        return jsonAnswer(200, object);
    }

} // namespace

RegistrationRoute::RegistrationRoute(CardHolders &holders, const TokenRoute &tokens)
    : m_holders(holders)
    , m_tokens(tokens)
{
}

bool RegistrationRoute::owns(const QByteArray &method, const QString &asked) const
{
    return method == "POST" && asked == QLatin1String(RegistrationStatusRoute::pathPrefix);
}

Answer RegistrationRoute::answer(const QString & /*asked*/, const RecordedRequest &request)
{
    if (const auto refusal = m_tokens.refusalOf(request))
        return *refusal;
    const QString type = QString::fromLatin1(request.headers.value("content-type")).toLower();
    if (!matches(type, "application/json(; ?charset=utf-8)?"))
        return textAnswer(415, QStringLiteral("A registration is application/json in UTF-8"));
    const QJsonObject object = QJsonDocument::fromJson(request.body).object();
    const bool hasTexts = std::all_of(object.begin(), object.end(),
                                      [](const QJsonValue &each) { return each.isString(); });
    if (!hasTexts || object.keys().join(QLatin1Char(' ')) != QLatin1String("password tid username"))
        return textAnswer(400, QStringLiteral("Not an object of password, tid and username"));
    const QString tid = object.value(QLatin1String("tid")).toString();
    const auto card = CardHolders::numberOf(tid);
    if (!card)
        return textAnswer(400, QStringLiteral("No number of a card: %1").arg(tid));

    const QString user = object.value(QLatin1String("username")).toString();
    const bool isLocked = user == QLatin1String(lockedUserName);
    const bool isShort = user == QLatin1String(shortUserName);
    const bool isKnown = isLocked || isShort || user == QLatin1String(userName);
    const QString expected = QString::fromUtf8(isShort ? shortPassword : password);
    if (!isKnown || object.value(QLatin1String("password")).toString() != expected)
        return outcome(QStringLiteral("login"), {},
                       QStringLiteral("Benutzername oder Passwort ist falsch."));
    if (isLocked)
        return outcome(QStringLiteral("locked"), QString::fromUtf8(lockedPerson),
                       QStringLiteral("Das Konto ist gesperrt."));
    const QString name = QString::fromUtf8(isShort ? shortPerson : person);
    const QString owner = m_holders.nameOf(*card);
    if (!owner.isEmpty() && owner != name)
        return outcome(QStringLiteral("owned"), {},
                       QStringLiteral("Die Karte ist bereits jemand anderem zugeordnet."));
    Answer good = outcome(QJsonValue::Null, name,
                          QStringLiteral("Die Karte wurde Ihrem Konto zugeordnet."));
    if (owner.isEmpty())
        good.takeEffect = [this, tid, name] {
            m_holders.assign({ tid, name, false, QDateTime::currentDateTime() });
        };
    return good;
}

Answer RegistrationRoute::spoil(Answer good, Fault fault, const RecordedRequest & /*request*/)
{
    return spoiledJson(std::move(good), fault, R"({"error":5,"name":[],"message":{}})",
                       { QStringLiteral("name"), QStringLiteral("message") });
}

} // namespace simulator
