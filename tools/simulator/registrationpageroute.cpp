// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/registrationpageroute.h"

#include "simulator/cardholders.h"
#include "simulator/qrcode.h"
#include "simulator/registrationroute.h"

namespace simulator {
namespace {

    constexpr auto svgType = "image/svg+xml";
    constexpr int oversizeBytes = 20'000'000;

    constexpr auto pageTemplate = R"(<!DOCTYPE html>
<html lang="de">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>Karte registrieren</title>
</head>
<body>
<h1>Karte %1</h1>
%2
</body>
</html>
)";

    QString pageUrl(const RecordedRequest &request, const QString &tid)
    {
        return QStringLiteral("http://%1%2%3/")
            .arg(QString::fromLatin1(request.headers.value("host")),
                 QLatin1String(RegistrationPageRoute::pathPrefix), tid);
    }

} // namespace

RegistrationPageRoute::RegistrationPageRoute(CardHolders &holders)
    : m_holders(holders)
{
}

QString RegistrationPageRoute::imageUrl(const RecordedRequest &request, const QString &tid)
{
    return pageUrl(request, tid) + QLatin1String(imageName);
}

bool RegistrationPageRoute::owns(const QByteArray & /*method*/, const QString &asked) const
{
    return asked.startsWith(QLatin1String(pathPrefix));
}

Response RegistrationPageRoute::respond(const QString &asked, const RecordedRequest &request)
{
    const QString rest = asked.mid(QLatin1String(pathPrefix).size());
    const QString tid = rest.section(QLatin1Char('/'), 0, 0);
    const QString file = rest.mid(tid.size() + 1);
    const auto card = CardHolders::numberOf(tid);
    const bool isImage = file == QLatin1String(imageName);
    if (!card || rest == tid || (!isImage && !file.isEmpty()))
        return textResponse(404, QStringLiteral("No card at this address"));
    const bool isPosted = request.method == "POST";
    if (request.method != "GET" && (isImage || !isPosted))
        return textResponse(405, QStringLiteral("Use GET, or the form of the page"));
    if (isImage)
        return { 200, svgType, qrCodeSvg(pageUrl(request, tid).toLatin1()) };
    return page(tid, *card, isPosted);
}

Response RegistrationPageRoute::page(const QString &tid, quint64 card, bool isPosted)
{
    const QString owner = m_holders.nameOf(card);
    const QString name = QString::fromUtf8(RegistrationRoute::person);
    QString content;
    Response response;
    if (!owner.isEmpty()) {
        response.status = isPosted ? 409 : 200;
        content = QStringLiteral("<p>Diese Karte ist bereits zugeordnet: %1.</p>").arg(owner);
    } else if (isPosted) {
        content = QStringLiteral("<p>Die Karte wurde %1 zugeordnet.</p>").arg(name);
        response.takeEffect = [this, tid, name] {
            m_holders.assign({ tid, name, true, QDateTime::currentDateTime() });
        };
    } else {
        content = QStringLiteral("<form method=\"post\"><button>Als %1 anmelden und die Karte "
                                 "registrieren</button></form>")
                      .arg(name);
    }
    response.contentType = "text/html; charset=utf-8";
    response.body = QString::fromUtf8(pageTemplate).arg(tid, content).toUtf8();
    return response;
}

Response RegistrationPageRoute::spoil(Response good, Fault fault,
                                      const RecordedRequest & /*request*/)
{
    if (good.contentType != svgType)
        return good;
    if (fault == Fault::InvalidValue)
        good.body = "Kein Bild";
    else if (fault == Fault::Oversize)
        good.body += QByteArray(oversizeBytes, ' ');
    else if (fault == Fault::HostileValues) // a small document with gigabytes of pixels
        good.body.replace(" width=\"", " width=\"90").replace(" height=\"", " height=\"90");
    return good;
}

} // namespace simulator
