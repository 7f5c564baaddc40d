// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/selfcheck.h"

#include "app/localchecks.h"
#include "app/panelcheck.h"
#include "attendance/attendancerequest.h"
#include "base/exceptions.h"
#include "base/json.h"
#include "config/config.h"
#include "config/effectivesettings.h"
#include "net/addresswarnings.h"
#include "net/errortext.h"
#include "net/kcclientcredentials.h"
#include "net/webaddress.h"
#include "presence/tallyxlogentity.h"
#include "remoteconfig/worker.h"
#include "schedule/eventdata.h"

#include <QJsonDocument>
#include <QNetworkReply>
#include <QSslSocket>
#include <QTimer>
#include <QUrl>

#include <cstdlib>

using namespace std::chrono_literals;

namespace {

const QString noWebAddress = QStringLiteral("no http or https address");

/** The reply's failure, with advice for the operator. */
QString failureOf(const QNetworkReply &reply)
{
    if (!isWebAddress(reply.url()))
        return noWebAddress;
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QString text = status > 0
        ? QStringLiteral("%1 (HTTP %2)").arg(errorText(reply)).arg(status)
        : errorText(reply);
    return status == 401 ? text + QStringLiteral(", are clientId and clientSecret right?") : text;
}

void connectTo(QSslSocket &socket, const QUrl &url)
{
    if (url.scheme() == QLatin1String("https"))
        socket.connectToHostEncrypted(url.host(), static_cast<quint16>(url.port(443)));
    else
        socket.connectToHost(url.host(), static_cast<quint16>(url.port(80)));
}

} // namespace

SelfCheck::SelfCheck(QObject *parent)
    : QObject(parent)
    , m_manager(this)
{
    m_limits.transferTimeout = 10s; // an operator waits for this
}

void SelfCheck::start()
{
    m_pending = 1;
    localchecks::checkSettings(m_report, m_settings);
    localchecks::checkTls(m_report);
    localchecks::checkInstance(m_report);
    localchecks::checkPanel(m_report);
    warnOfAddresses();
    checkToken();
    done();
}

void SelfCheck::checkToken()
{
    const QString what = QStringLiteral("token");
    if (!Config::instance()->hasCredentials()) {
        continueWithoutToken(
            what, QStringLiteral("Keycloak/clientId or Keycloak/clientSecret is not set"));
        return;
    }
    ++m_pending;
    QNetworkReply *reply = postTokenRequest(m_manager, clientCredentialsForm(), m_limits);
    connect(reply, &QNetworkReply::finished, this, [this, reply] { onToken(reply); });
}

void SelfCheck::onToken(QNetworkReply *reply)
{
    reply->deleteLater();
    const QString what = QStringLiteral("token %1").arg(reply->url().toDisplayString());
    try {
        if (reply->error() != QNetworkReply::NoError)
            throw KCException(failureOf(*reply));
        const TokenResponse response = parseTokenResponse(reply->readAll());
        m_report.add(Verdict::Good, what, QStringLiteral("valid for %1 s").arg(response.expiresIn));
        checkConfiguration(response.accessToken);
    } catch (const Exception &e) {
        continueWithoutToken(what, QString::fromUtf8(e.what()));
    }
    done();
}

void SelfCheck::continueWithoutToken(const QString &what, const QString &problem)
{
    m_report.add(Verdict::Bad, what, problem);
    checkConnections(Service::Kind::Configuration);
    checkOtherServices();
}

void SelfCheck::checkConfiguration(const QString &token)
{
    ++m_pending;
    QNetworkReply *reply = getConfigurationDocument(m_manager, token, m_limits);
    connect(reply, &QNetworkReply::finished, this, [this, reply] { onConfiguration(reply); });
}

void SelfCheck::onConfiguration(QNetworkReply *reply)
{
    reply->deleteLater();
    const QString what = QStringLiteral("configuration %1").arg(reply->url().toDisplayString());
    const QJsonDocument document = readJson(reply->readAll());
    if (reply->error() != QNetworkReply::NoError) {
        m_report.add(Verdict::Bad, what, failureOf(*reply));
    } else if (!document.isObject()) {
        m_report.add(Verdict::Bad, what, QStringLiteral("the answer is no JSON object"));
    } else {
        m_report.add(Verdict::Good, what, QStringLiteral("read"));
        applyToCopy(document);
    }
    checkOtherServices();
    done();
}

/** Applies the document, to check the rest with the kiosk's settings. Prints what changes. */
void SelfCheck::applyToCopy(const QJsonDocument &document)
{
    Config *config = Config::instance();
    const auto before = effectiveSettings(*config);
    config->applyConfiguration(document);
    warnOfAddresses();
    const auto after = effectiveSettings(*config);
    for (int i = 0; i < after.size(); ++i) {
        if (after[i].shown == before[i].shown)
            continue;
        m_report.print(QStringLiteral("        %1 = %2  [configuration service]")
                           .arg(after[i].key, after[i].shown));
        m_report.addProblem(after[i]);
    }
}

void SelfCheck::checkOtherServices()
{
    checkSchedule();
    localchecks::checkReader(m_report);
    localchecks::checkSpool(m_report, QStringLiteral("attendance"), attendanceSpool());
    localchecks::checkSpool(m_report, QStringLiteral("presence"), tallyxSpool());
    checkConnections(Service::Kind::Records);
}

void SelfCheck::checkSchedule()
{
    ++m_pending;
    RequestLimits limits = EventData::scheduleLimits();
    limits.transferTimeout = m_limits.transferTimeout;
    auto *data = new EventData(limits, this);
    connect(data, &EventData::readEventDataFinished, this, &SelfCheck::onSchedule);
}

void SelfCheck::onSchedule(EventData *data)
{
    const Config *config = Config::instance();
    const bool isShown = config->initialItem() != QLatin1String("Default.qml");
    const Verdict missing = isShown ? Verdict::Bad : Verdict::Notice;
    const int id = config->plenarLocationId();
    const QString what = QStringLiteral("schedule %1")
                             .arg(config->eventDataUrl(config->scheduleDate()).toDisplayString());
    if (!isWebAddress(config->eventDataUrl(config->scheduleDate())))
        m_report.add(missing, what, noWebAddress);
    else if (data->error())
        m_report.add(missing, what, data->errorMessage());
    else if (id <= 0)
        m_report.add(missing, what, QStringLiteral("read, but plenarLocationId is not set"));
    else if (const EventLocation *location = data->location(id))
        m_report.add(Verdict::Good, what,
                     QStringLiteral("%1 events in \"%2\"")
                         .arg(location->events().size())
                         .arg(location->name()));
    else
        m_report.add(missing, what, QStringLiteral("read, knows no location %1").arg(id));
    done();
}

void SelfCheck::checkConnections(Service::Kind kind)
{
    for (const Service &service : services(*Config::instance())) {
        if (service.kind == kind && service.isUsed)
            checkConnection(service);
    }
}

/** Connects, with TLS for https, and sends nothing: a request could become a record. */
void SelfCheck::checkConnection(const Service &service)
{
    const QString what = service.name + QLatin1Char(' ') + service.url.toDisplayString();
    if (!isWebAddress(service.url)) {
        m_report.add(Verdict::Bad, what, noWebAddress);
        return;
    }
    ++m_pending;
    auto *socket = new QSslSocket(this);
    const auto end = [this, socket, what](Verdict verdict, const QString &result) {
        socket->disconnect(this);
        socket->abort();
        socket->deleteLater();
        m_report.add(verdict, what, result);
        done();
    };
    const bool isEncrypted = service.url.scheme() == QLatin1String("https");
    connect(socket, isEncrypted ? &QSslSocket::encrypted : &QSslSocket::connected, this,
            [end] { end(Verdict::Good, QStringLiteral("reachable")); });
    connect(socket, &QSslSocket::errorOccurred, this, [end, socket] {
        const QString tls = tlsErrorText(socket->sslHandshakeErrors());
        end(Verdict::Bad, tls.isEmpty() ? socket->errorString() : tls);
    });
    QTimer::singleShot(m_limits.transferTimeout, socket,
                       [end] { end(Verdict::Bad, QStringLiteral("no answer in time")); });
    connectTo(*socket, service.url);
}

void SelfCheck::done()
{
    if (--m_pending == 0)
        Q_EMIT finished(m_report.hasFailed() ? EXIT_FAILURE : EXIT_SUCCESS);
}
