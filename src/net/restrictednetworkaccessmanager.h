// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"
#include "net/xnetworkaccessmanager.h"

#include <QQmlNetworkAccessManagerFactory>

/**
 * The network access of the QML engine, limited to what the views need.
 *
 * The views need only the configuration service, for the registration and its QR code. Every other
 * address is refused, except data URLs up to the maximum body size. Requests have time limits,
 * which QML itself lacks. An image is passed on only if it is harmless to decode. A redirect is a
 * failure: QML would send the bearer token and the password to its target.
 */
class RestrictedNetworkAccessManager : public XNetworkAccessManager
{
    Q_OBJECT

public:
    explicit RestrictedNetworkAccessManager(const RequestLimits &limits, QObject *parent = nullptr);

protected:
    QNetworkReply *createRequest(Operation op, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;

private:
    [[nodiscard]] bool isAllowed(const QUrl &url) const;

    RequestLimits m_limits;
};

/**
 * Creates the restricted managers of a QML engine. Called in the GUI thread and in the threads of
 * its image readers.
 */
class RestrictedNetworkAccessManagerFactory : public QQmlNetworkAccessManagerFactory
{
public:
    explicit RestrictedNetworkAccessManagerFactory(const RequestLimits &limits = {});

    QNetworkAccessManager *create(QObject *parent) override;

private:
    RequestLimits m_limits;
};
