// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/selfcheck.h"

#include "attendance/attendancespool.h"
#include "base/exceptions.h"
#include "config/config.h"
#include "config/effectivesettings.h"
#include "config/keys.h"
#include "net/errortext.h"
#include "net/kcclientcredentials.h"
#include "net/plainhttp.h"
#include "presence/tallyxlogentity.h"
#include "reader/readerport.h"
#include "remoteconfig/worker.h"
#include "schedule/eventdata.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QSslSocket>
#include <QTimer>
#include <QUrl>

#include <cstdio>

using namespace std::chrono_literals;

namespace {

bool isWebAddress(const QUrl &url)
{
    return !url.host().isEmpty()
        && (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"));
}

} // namespace

SelfCheck::SelfCheck(QObject *parent)
    : QObject(parent)
    , m_manager(this)
    , m_out(stdout)
{
    m_limits.transferTimeout = 10s; // an operator waits for this
    m_out.setCodec("UTF-8");
}

void SelfCheck::start()
{
    m_pending = 1;
    printSettings();
    checkTls();
    warnOfPlainHttp();
    checkToken();
    done();
}

void SelfCheck::printSettings()
{
    for (const EffectiveSetting &setting : effectiveSettings(*Config::instance()))
        print(QStringLiteral("%1 = %2  [%3]").arg(setting.key, setting.shown, setting.origin));
    const QStringList behind = m_settings.filesBehind();
    for (const QString &file : behind)
        print(QStringLiteral("        behind the user's file: ") + file);
    const QString what = QStringLiteral("settings ") + m_settings.fileName();
    if (m_settings.problem().isEmpty())
        report(Verdict::Good, what,
               QFile::exists(m_settings.fileName()) ? QStringLiteral("read")
                                                    : QStringLiteral("do not exist yet"));
    else
        report(Verdict::Bad, what, m_settings.problem());
}

void SelfCheck::checkTls()
{
    if (QSslSocket::supportsSsl())
        report(Verdict::Good, QStringLiteral("TLS"), QSslSocket::sslLibraryVersionString());
    else
        report(Verdict::Bad, QStringLiteral("TLS"), QStringLiteral("not available"));
}

void SelfCheck::checkToken()
{
    const Config *config = Config::instance();
    if (config->keycloakClientId().isEmpty() || config->keycloakClientSecret().isEmpty()) {
        report(Verdict::Bad, QStringLiteral("token"),
               QStringLiteral("Keycloak/clientId or Keycloak/clientSecret is not set"));
        checkConnection(QStringLiteral("configuration"), config->quirlUrl());
        checkServices();
        return;
    }
    if (!isWebAddress(QUrl(config->keycloakUrl()))) {
        report(Verdict::Bad, QStringLiteral("token"),
               QStringLiteral("Keycloak/url is no http or https address"));
        checkConnection(QStringLiteral("configuration"), config->quirlUrl());
        checkServices();
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
        report(Verdict::Good, what, QStringLiteral("valid for %1 s").arg(response.expiresIn));
        checkConfiguration(response.accessToken);
    } catch (const Exception &e) {
        report(Verdict::Bad, what, QString::fromUtf8(e.what()));
        checkConnection(QStringLiteral("configuration"), Config::instance()->quirlUrl());
        checkServices();
    }
    done();
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
    const QJsonDocument document = QJsonDocument::fromJson(reply->readAll());
    if (reply->error() != QNetworkReply::NoError) {
        report(Verdict::Bad, what, failureOf(*reply));
    } else if (!document.isObject()) {
        report(Verdict::Bad, what, QStringLiteral("the answer is no JSON object"));
    } else {
        report(Verdict::Good, what, QStringLiteral("read"));
        tryOut(document);
    }
    checkServices();
    done();
}

/**
 * Lets the document take effect as it would on the kiosk, on the copy of the settings: the screen
 * is judged by what it will do. Tells what changes.
 */
void SelfCheck::tryOut(const QJsonDocument &document)
{
    Config *config = Config::instance();
    const auto before = effectiveSettings(*config);
    config->applyConfiguration(document);
    warnOfPlainHttp();
    const auto after = effectiveSettings(*config);
    for (int i = 0; i < after.size(); ++i) {
        if (after[i].shown != before[i].shown)
            print(QStringLiteral("        %1 = %2  [configuration service]")
                      .arg(after[i].key, after[i].shown));
    }
}

void SelfCheck::checkServices()
{
    checkSchedule();
    checkReader();
    checkSpool(QStringLiteral("attendance"), attendanceSpool());
    checkSpool(QStringLiteral("presence"), tallyxSpool());
    checkRecordServices();
}

/** Lists the serial ports, and which of them the kiosk would open. */
void SelfCheck::checkReader()
{
    QVector<PortTraits> ports;
    const auto available = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : available) {
        ports.append(traitsOf(port));
        print(QStringLiteral("        port %1 \"%2\", vendor %3")
                  .arg(port.portName(), port.description(),
                       QString::number(port.vendorIdentifier(), 16)));
    }
    const QString chosen = chooseReaderPort(ports);
    const Config *config = Config::instance();
    const bool isNeeded
        = config->attendanceEnabled() || config->tallyxMode() != Config::TallyxDisabled;
    if (!chosen.isEmpty())
        report(Verdict::Good, QStringLiteral("reader"), chosen);
    else
        report(isNeeded ? Verdict::Bad : Verdict::Notice, QStringLiteral("reader"),
               QStringLiteral("none of %1 serial ports looks like one").arg(ports.size()));
}

/** Without touching anything: a folder that does not exist must be possible to make. */
void SelfCheck::checkSpool(const QString &what, const Spool &spool)
{
    const QString folder = spool.folder();
    const QString line = what + QLatin1String(" spool ") + folder;
    QFileInfo nearest(folder);
    while (!nearest.exists() && !nearest.isRoot())
        nearest.setFile(nearest.path());
    if (!nearest.isDir() || !nearest.isWritable())
        report(Verdict::Bad, line,
               QStringLiteral("can not be written to (%1)").arg(nearest.filePath()));
    else if (!spool.canBeListed())
        report(Verdict::Bad, line, QStringLiteral("can not be listed"));
    else
        report(Verdict::Good, line, QStringLiteral("%1 files wait").arg(spool.count()));
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
    const int id = config->value(keys::plenarLocationId, 0).toInt();
    const QString what = QStringLiteral("schedule %1")
                             .arg(config->eventDataUrl(config->scheduleDate()).toDisplayString());
    if (data->error())
        report(missing, what, data->errorMessage());
    else if (id <= 0)
        report(missing, what, QStringLiteral("read, but plenarLocationId is not set"));
    else if (const EventLocation *location = data->location(id))
        report(Verdict::Good, what,
               QStringLiteral("%1 events in \"%2\"")
                   .arg(location->events().size())
                   .arg(location->name()));
    else
        report(missing, what, QStringLiteral("read, knows no location %1").arg(id));
    done();
}

void SelfCheck::checkRecordServices()
{
    const Config *config = Config::instance();
    if (config->attendanceEnabled())
        checkConnection(QStringLiteral("attendance"), config->attendanceLogUrl());
    if (config->tallyxMode() != Config::TallyxDisabled)
        checkConnection(QStringLiteral("presence"), config->tallyxLogUrl());
}

/** Connects, with TLS where the address says so, and nothing more: a request might be a record. */
void SelfCheck::checkConnection(const QString &what, const QUrl &url)
{
    const QString line = what + QLatin1Char(' ') + url.toDisplayString();
    if (!isWebAddress(url)) {
        report(Verdict::Bad, line, QStringLiteral("no http or https address"));
        return;
    }
    ++m_pending;
    const bool encrypted = url.scheme() == QLatin1String("https");
    auto *socket = new QSslSocket(this);
    const auto end = [this, socket, line](Verdict verdict, const QString &result) {
        socket->disconnect(this);
        socket->abort();
        socket->deleteLater();
        report(verdict, line, result);
        done();
    };
    connect(socket, encrypted ? &QSslSocket::encrypted : &QSslSocket::connected, this,
            [end] { end(Verdict::Good, QStringLiteral("reachable")); });
    connect(socket, &QSslSocket::errorOccurred, this,
            [end, socket] { end(Verdict::Bad, socket->errorString()); });
    QTimer::singleShot(m_limits.transferTimeout, socket,
                       [end] { end(Verdict::Bad, QStringLiteral("no answer in time")); });

    if (encrypted)
        socket->connectToHostEncrypted(url.host(), static_cast<quint16>(url.port(443)));
    else
        socket->connectToHost(url.host(), static_cast<quint16>(url.port(80)));
}

/** The reply's failure, with what an operator can do about it. */
QString SelfCheck::failureOf(const QNetworkReply &reply)
{
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QString text = status > 0
        ? QStringLiteral("%1 (HTTP %2)").arg(errorText(reply)).arg(status)
        : errorText(reply);
    return status == 401 ? text + QStringLiteral(", are clientId and clientSecret right?") : text;
}

void SelfCheck::report(Verdict verdict, const QString &what, const QString &result)
{
    const char *word = verdict == Verdict::Good ? "ok    "
        : verdict == Verdict::Notice            ? "note  "
                                                : "FAILED";
    m_failed |= verdict == Verdict::Bad;
    print(QStringLiteral("%1  %2: %3").arg(QLatin1String(word), what, result));
}

/** Much of it comes from outside, and a terminal obeys control characters. */
void SelfCheck::print(const QString &line)
{
    constexpr int longest = 300;
    m_out << printableLine(maskPasswords(line), longest) << '\n';
    m_out.flush();
}

void SelfCheck::done()
{
    if (--m_pending == 0)
        Q_EMIT finished(m_failed ? EXIT_FAILURE : EXIT_SUCCESS);
}
