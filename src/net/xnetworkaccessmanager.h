// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QNetworkAccessManager>

/**
 * The network access manager of all components; each creates its own, in its own thread.
 *
 * Begins with new connections after several requests without a response, see
 * clearConnectionCache(). Adds the configured user agent to requests and logs network and TLS
 * errors. Keeps no cookies. Never retries, never ignores a TLS error and never changes the outcome
 * of a request.
 */
class XNetworkAccessManager : public QNetworkAccessManager
{
    Q_OBJECT

public:
    explicit XNetworkAccessManager(QObject *parent = nullptr);

protected:
    QNetworkReply *createRequest(Operation op, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;

private:
    class D;
    D *d;
};
