// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/xnetworkaccessmanager.h"

#include "base/connections.h"
#include "buildconfig.h"
#include "config/config.h"
#include "net/errortext.h"

#include <QDebug>
#include <QNetworkCookieJar>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSet>
#include <QSslError>

namespace {

/** Keeps nothing: the session of one visitor must not go out with the next one's request. */
class NoCookies : public QNetworkCookieJar
{
    Q_OBJECT

public:
    using QNetworkCookieJar::QNetworkCookieJar;

    bool setCookiesFromUrl(const QList<QNetworkCookie> & /*cookies*/, const QUrl & /*url*/) override
    {
        return false;
    }
};

} // namespace

/** Logs the errors of the manager and its replies. Lives in the manager's thread. */
class XNetworkAccessManager::D : public QObject
{
    Q_OBJECT

public:
    explicit D(XNetworkAccessManager *manager)
        : QObject(manager)
        , q(manager)
    {
    }

    XNetworkAccessManager *q;
    QByteArray userAgent;
    QSet<QObject *> inFlight;
    int silent = 0; ///< requests in a row that ended without a response

    void renewConnections();

public Q_SLOTS:
    void errorOccured(QNetworkReply::NetworkError error);

private Q_SLOTS:
    void setUserAgent(QString ua);
    void sslErrorsOccured(QNetworkReply *reply, QList<QSslError> errors);
    void onFinished(QNetworkReply *reply);
};

XNetworkAccessManager::XNetworkAccessManager(QObject *parent)
    : QNetworkAccessManager(parent)
    , d(new D(this))
{
    setCookieJar(new NoCookies(this));
    connectChecked(Config::instance(),
                   SIGNAL(userAgentChanged(QString)), d, SLOT(setUserAgent(QString)));
    connectChecked(this, SIGNAL(finished(QNetworkReply*)), d, SLOT(onFinished(QNetworkReply*)));
    connectChecked(this,
                   SIGNAL(sslErrors(QNetworkReply*,QList<QSslError>)), d,
                          SLOT(sslErrorsOccured(QNetworkReply*,QList<QSslError>)));
}

QNetworkReply *XNetworkAccessManager::createRequest(Operation op, const QNetworkRequest &request,
                                                    QIODevice *outgoingData)
{
    d->renewConnections();
    QNetworkRequest copy(request);
    if (!d->userAgent.isEmpty())
        copy.setRawHeader(QByteArrayLiteral("User-Agent"), d->userAgent);
    QNetworkReply *reply = QNetworkAccessManager::createRequest(op, copy, outgoingData);
    connectChecked(reply,
                   SIGNAL(error(QNetworkReply::NetworkError)), d,
                          SLOT(errorOccured(QNetworkReply::NetworkError)));
    d->inFlight.insert(reply);
    connect(reply, &QObject::destroyed, d, [d = d](QObject *gone) { d->inFlight.remove(gone); });
    return reply;
}

/**
 * Begins with new connections after several requests without a response. Qt's thread for them has
 * been seen to send nothing any more for half an hour, while the service responded to others.
 * Waits until none is in flight: a record whose response is lost is sent twice.
 */
void XNetworkAccessManager::D::renewConnections()
{
    constexpr int maxSilent = 6; // Qt's connections to a host

    if (silent < maxSilent || !inFlight.isEmpty())
        return;
    silent = 0;
    qInfo() << "No response to several requests in a row, beginning with new connections.";
    q->clearConnectionCache();
}

void XNetworkAccessManager::D::errorOccured(QNetworkReply::NetworkError error)
{
    const auto *reply = qobject_cast<QNetworkReply *>(sender());
    if (!reply) {
        qCritical() << "Network error (unknown context)" << error;
        return;
    }

    // The internal host is not always reachable, which is no fault.
    const bool expectedMiss = reply->error() == QNetworkReply::HostNotFoundError
        || reply->error() == QNetworkReply::ContentNotFoundError;
    if (expectedMiss
        && reply->url().host(QUrl::FullyDecoded) == QLatin1String(buildconfig::internalHost))
        return;

    qCritical() << "Network error" << reply->error() << errorText(*reply) << "for" << reply->url();
}

void XNetworkAccessManager::D::setUserAgent(QString ua)
{
    userAgent = ua.toLatin1();
}

void XNetworkAccessManager::D::onFinished(QNetworkReply *reply)
{
    inFlight.remove(reply);
    const bool isSilent = reply->error() == QNetworkReply::OperationCanceledError
        && !reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
    silent = isSilent ? silent + 1 : 0;
}

void XNetworkAccessManager::D::sslErrorsOccured(QNetworkReply *reply, QList<QSslError> errors)
{
    rememberTlsErrors(*reply, errors);
    qWarning() << "SSL errors for" << reply->url();
    for (const QSslError &error : qAsConst(errors))
        qWarning() << error.error() << error.errorString();
}

#include "xnetworkaccessmanager.moc"
