// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/registrationroute.h"

#include "simulator/cardholders.h"
#include "simulator/registrationstatusroute.h"
#include "simulator/strictforms.h"
#include "simulator/tokenroute.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>

namespace simulator {
namespace {

    /// The service reports a refusal in the body, with status 200.
    Response outcome(const QJsonValue &error, const QString &name, const QString &message)
    {
        QJsonObject object { { QStringLiteral("error"), error },
                             { QStringLiteral("message"), message } };
        if (!name.isEmpty())
            object.insert(QStringLiteral("name"), name);
        return jsonResponse(200, object);
    }

    struct Account
    {
        const char *user;
        const char *password;
        const char *person;
        bool isLocked;
    };

    using Self = RegistrationRoute;
    constexpr std::array<Account, 3> accounts { {
        { Self::userName, Self::password, Self::person, false },
        { Self::lockedUserName, Self::password, Self::lockedPerson, true },
        { Self::shortUserName, Self::shortPassword, Self::shortPerson, false },
    } };

    /// The account for the user name and password, or null.
    const Account *accountOf(const QJsonObject &login)
    {
        const QString user = login.value(QLatin1String("username")).toString();
        const QString password = login.value(QLatin1String("password")).toString();
        const auto found = std::find_if(accounts.begin(), accounts.end(), [&](const Account &each) {
            return user == QLatin1String(each.user) && password == QString::fromUtf8(each.password);
        });
        return found == accounts.end() ? nullptr : found;
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

Response RegistrationRoute::respond(const QString & /*asked*/, const RecordedRequest &request)
{
    if (const auto refusal = m_tokens.refusalOf(request))
        return *refusal;
    const QString type = QString::fromLatin1(request.headers.value("content-type")).toLower();
    if (!matches(type, "application/json(; ?charset=utf-8)?"))
        return textResponse(415,
                            QStringLiteral("The content type must be application/json in UTF-8"));
    const QJsonObject object = QJsonDocument::fromJson(request.body).object();
    const bool hasTexts = std::all_of(object.begin(), object.end(),
                                      [](const QJsonValue &each) { return each.isString(); });
    if (!hasTexts || object.keys().join(QLatin1Char(' ')) != QLatin1String("password tid username"))
        return textResponse(400,
                            QStringLiteral("Expected an object with password, tid and username"));
    const QString tid = object.value(QLatin1String("tid")).toString();
    const auto card = CardHolders::numberOf(tid);
    if (!card)
        return textResponse(400, QStringLiteral("Not a card number: %1").arg(tid));

    const Account *account = accountOf(object);
    if (!account)
        return outcome(QStringLiteral("login"), {},
                       QStringLiteral("Benutzername oder Passwort ist falsch."));
    const QString name = QString::fromUtf8(account->person);
    if (account->isLocked)
        return outcome(QStringLiteral("locked"), name, QStringLiteral("Das Konto ist gesperrt."));
    const QString owner = m_holders.nameOf(*card);
    if (!owner.isEmpty() && owner != name)
        return outcome(QStringLiteral("owned"), {},
                       QStringLiteral("Die Karte ist bereits jemand anderem zugeordnet."));
    Response good = outcome(QJsonValue::Null, name,
                            QStringLiteral("Die Karte wurde Ihrem Konto zugeordnet."));
    if (owner.isEmpty())
        good.takeEffect = [this, tid, name] {
            m_holders.assign({ tid, name, false, QDateTime::currentDateTime() });
        };
    return good;
}

Response RegistrationRoute::spoil(Response good, Fault fault, const RecordedRequest & /*request*/)
{
    return spoiledJson(std::move(good), fault, R"({"error":5,"name":[],"message":{}})",
                       { QStringLiteral("name"), QStringLiteral("message") });
}

} // namespace simulator
