// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QNetworkReply>

/**
 * The reply to a request for an image. Passes on the whole response once it is known to be harmless
 * to decode; otherwise it fails with a log line, like an image that could not be loaded. Redirects
 * are not passed on.
 */
class CheckedImageReply : public QNetworkReply
{
    Q_OBJECT

public:
    /** Takes ownership of @p source, the reply of the network. */
    explicit CheckedImageReply(QNetworkReply *source, QObject *parent = nullptr);

    void abort() override { m_source->abort(); }
    [[nodiscard]] qint64 bytesAvailable() const override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;

private:
    void onSourceFinished();
    void fail(NetworkError error, const QString &text);

    QNetworkReply *m_source;
    QByteArray m_body; ///< what has not been read
};
