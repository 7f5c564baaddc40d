// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>

class KCClientCredentials;
class QNetworkAccessManager;
class XNetworkAccessManager;

/** Requests this screen's document from the configured service, with @p token as bearer. */
[[nodiscard]] QNetworkReply *getConfigurationDocument(QNetworkAccessManager &manager,
                                                      const QString &token,
                                                      const RequestLimits &limits);

/**
 * Fetches this screen's configuration document from the configuration service, every five minutes
 * once there is a token, and passes it to Config. A failure leaves the settings unchanged.
 *
 * Created without a parent in the GUI thread and moved to the configuration worker's thread, where
 * init() creates everything else.
 */
class Worker : public QObject
{
    Q_OBJECT

public:
    /**
     * @p tokenReceiver has a slot setAccessToken(QString) that receives every new token. It lives
     * in the GUI thread and outlives this object's thread.
     */
    explicit Worker(QObject *tokenReceiver, const RequestLimits &limits = {});
    ~Worker() override;

Q_SIGNALS:
    void newConfiguration(QJsonDocument cfg);
    /** As of KCClientCredentials. */
    void tokenObtained(QDateTime validUntil, QString grant);
    void tokenFailed(QString reason);
    /** The configuration was not received; @p reason in a few words. */
    void configurationFailed(QString reason);

private Q_SLOTS:
    void init();
    void onAccessTokenAvailable();
    void getConfiguration();
    void getConfigurationFinished();

private:
    QObject *m_tokenReceiver;
    RequestLimits m_limits;
    QPointer<XNetworkAccessManager> m_manager;
    QPointer<KCClientCredentials> m_credentials;
    QPointer<QTimer> m_fetchTimer;
    QPointer<QNetworkReply> m_configurationReply;
};
