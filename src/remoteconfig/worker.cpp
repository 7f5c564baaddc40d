// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "remoteconfig/worker.h"

#include "base/connections.h"
#include "base/json.h"
#include "config/config.h"
#include "net/accesstoken.h"
#include "net/errortext.h"
#include "net/http.h"
#include "net/kcclientcredentials.h"
#include "net/xnetworkaccessmanager.h"

#include <QDebug>
#include <QLocale>
#include <QNetworkRequest>
#include <QThread>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

QNetworkReply *getConfigurationDocument(QNetworkAccessManager &manager, const QString &token,
                                        const RequestLimits &limits)
{
    QUrl url = Config::instance()->quirlUrl();
    url.setPath(QStringLiteral("/lumenboards/api/config/"));
    QNetworkRequest request = http::request(url);
    accesstoken::setBearer(request, token);
    request.setRawHeader(QByteArrayLiteral("Accept"), QByteArrayLiteral("application/json"));
    request.setRawHeader(QByteArrayLiteral("Accept-Language"), QLocale().bcp47Name().toLocal8Bit());
    return http::get(manager, request, limits);
}

Worker::Worker(QObject *tokenReceiver, const RequestLimits &limits)
    : m_tokenReceiver(tokenReceiver)
    , m_limits(limits)
{
}

Worker::~Worker()
{
    // Children are deleted in creation order, but a manager deleted before its replies waits for
    // them.
    delete m_configurationReply;
    delete m_credentials;
}

void Worker::init()
{
    qDebug() << "Worker thread started." << QThread::currentThread();
    m_manager = new XNetworkAccessManager(this);
    m_credentials = new KCClientCredentials(m_manager, m_limits, this);
    connect(m_credentials, &KCClientCredentials::accessTokenChanged, this, &accesstoken::publish);
    connectChecked(m_credentials,
                   SIGNAL(accessTokenChanged(QString)), m_tokenReceiver,
                          SLOT(setAccessToken(QString)));
    connect(m_credentials, &KCClientCredentials::accessTokenAvailable, this,
            &Worker::onAccessTokenAvailable);
    connect(m_credentials, &KCClientCredentials::tokenObtained, this, &Worker::tokenObtained);
    connect(m_credentials, &KCClientCredentials::tokenFailed, this, &Worker::tokenFailed);
    m_credentials->grant();
    connectChecked(this,
                   SIGNAL(newConfiguration(QJsonDocument)), Config::instance(),
                          SLOT(applyConfiguration(QJsonDocument)));
}

void Worker::onAccessTokenAvailable()
{
    getConfiguration();
    m_fetchTimer = new QTimer(this);
    m_fetchTimer->setObjectName(QStringLiteral("fetch"));
    connect(m_fetchTimer, &QTimer::timeout, this, &Worker::getConfiguration);
    m_fetchTimer->start(300s);
}

void Worker::getConfiguration()
{
    if (m_configurationReply) {
        qWarning() << "_nrCfg already set.";
        m_configurationReply->disconnect(this);
        m_configurationReply->abort();
        m_configurationReply->deleteLater();
    }

    const QString token = m_credentials->accessToken();
    if (token.isEmpty()) {
        qDebug() << "No access token, not asking for the configuration.";
        return;
    }
    m_configurationReply = getConfigurationDocument(*m_manager, token, m_limits);
    connect(m_configurationReply, &QNetworkReply::finished, this,
            &Worker::getConfigurationFinished);
}

void Worker::getConfigurationFinished()
{
    const QPointer<QNetworkReply> reply = std::exchange(m_configurationReply, {});
    if (!reply)
        return; // a newer request has replaced it
    reply->deleteLater();
    if (reply->error() != QNetworkReply::NoError) {
        qWarning() << "Failed to get configuration." << reply->error() << errorText(*reply);
        Q_EMIT configurationFailed(briefError(*reply));
        return;
    }
    const QString unreadable = QStringLiteral("unreadable response");
    QJsonParseError error;
    const QJsonDocument document = readJson(reply->readAll(), &error);
    if (error.error != QJsonParseError::NoError) {
        qWarning() << "Failed to parse config response:" << error.errorString();
        Q_EMIT configurationFailed(unreadable);
        return;
    }
    if (!document.isObject()) {
        qWarning() << "Config response is not an object.";
        Q_EMIT configurationFailed(unreadable);
        return;
    }
    Q_EMIT newConfiguration(document);
}
