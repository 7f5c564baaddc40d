// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/testcase.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>

/** Base of the tests that send requests to the simulated services. */
class HttpTest : public TestCase
{
protected:
    using Headers = QList<QNetworkReply::RawHeaderPair>;

    QNetworkReply *get(const QByteArray &path, const Headers &headers = {})
    {
        return m_manager.get(request(path, headers));
    }
    QNetworkReply *post(const QByteArray &path, const QByteArray &body, const Headers &headers = {})
    {
        return m_manager.sendCustomRequest(request(path, headers), "POST", body);
    }
    static bool ends(QNetworkReply *reply)
    {
        return reply->isFinished() || QSignalSpy(reply, &QNetworkReply::finished).wait(60000);
    }
    static int statusOf(QNetworkReply *reply)
    {
        const auto status = QNetworkRequest::HttpStatusCodeAttribute;
        return ends(reply) ? reply->attribute(status).toInt() : 0;
    }

    QNetworkAccessManager m_manager;

private:
    QNetworkRequest request(const QByteArray &path, const Headers &headers)
    {
        QNetworkRequest result(services().baseUrl().resolved(QUrl::fromEncoded(path)));
        result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        for (const auto &[name, value] : headers)
            result.setRawHeader(name, value);
        return result;
    }
};
