// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QNetworkReply>

#include <algorithm>

/** A reply whose bytes and failure are set by the test. */
class FakeReply : public QNetworkReply
{
public:
    explicit FakeReply(const QUrl &url)
    {
        setUrl(url);
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    /** More of the body arrives. Like Qt, does not always report the progress at once. */
    void feed(const QByteArray &bytes)
    {
        m_unread += bytes;
        m_received += bytes.size();
        Q_EMIT readyRead();
    }
    void tellProgress() { Q_EMIT downloadProgress(m_received, -1); }

    /** Ends with status 200 and @p body. */
    void succeed(const QByteArray &body)
    {
        setAttribute(QNetworkRequest::HttpStatusCodeAttribute, 200);
        feed(body);
        setFinished(true);
        Q_EMIT finished();
    }

    void fail(NetworkError error, const QString &text)
    {
        setError(error, text);
        setFinished(true);
        Q_EMIT errorOccurred(error);
        Q_EMIT finished();
    }

    void abort() override { fail(OperationCanceledError, QStringLiteral("Operation canceled")); }
    [[nodiscard]] qint64 bytesAvailable() const override { return m_unread.size(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const int count = static_cast<int>(std::min<qint64>(maxSize, m_unread.size()));
        std::copy_n(m_unread.cbegin(), count, data);
        m_unread.remove(0, count);
        return count;
    }

private:
    QByteArray m_unread;
    qint64 m_received = 0;
};
