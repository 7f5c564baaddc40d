// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "net/requestlimits.h"
#include "net/xnetworkaccessmanager.h"

#include <QQmlNetworkAccessManagerFactory>

/**
 * The network of the QML engine, fenced in.
 *
 * The views talk to the configuration service alone (the registration and its QR code), so every
 * other address is refused, data URLs of modest size excepted. Requests end after time limits that
 * QML itself does not have, bodies are capped, and a redirect is a failure: QML would carry the
 * bearer token and the password to wherever it points.
 */
class FencedNetworkAccessManager : public XNetworkAccessManager
{
    Q_OBJECT

public:
    explicit FencedNetworkAccessManager(const RequestLimits &limits, QObject *parent = nullptr);

protected:
    QNetworkReply *createRequest(Operation op, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;

private:
    [[nodiscard]] bool isAllowed(const QUrl &url) const;

    RequestLimits m_limits;
};

/** Hands fenced managers to a QML engine; called in the GUI thread and in image reader threads. */
class FencedNetworkAccessManagerFactory : public QQmlNetworkAccessManagerFactory
{
public:
    explicit FencedNetworkAccessManagerFactory(const RequestLimits &limits = {});

    QNetworkAccessManager *create(QObject *parent) override;

private:
    RequestLimits m_limits;
};
