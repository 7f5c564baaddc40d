// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/checkedimagereply.h"

#include "net/imagecheck.h"

#include <QDebug>

#include <algorithm>

CheckedImageReply::CheckedImageReply(QNetworkReply *source, QObject *parent)
    : QNetworkReply(parent)
    , m_source(source)
{
    source->setParent(this);
    setRequest(source->request());
    setUrl(source->url());
    setOperation(source->operation());
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    connect(source, &QNetworkReply::downloadProgress, this, &QNetworkReply::downloadProgress);
    connect(source, &QNetworkReply::finished, this, &CheckedImageReply::onSourceFinished);
}

qint64 CheckedImageReply::bytesAvailable() const
{
    return m_body.size();
}

qint64 CheckedImageReply::readData(char *data, qint64 maxSize)
{
    const int count = static_cast<int>(std::min<qint64>(maxSize, m_body.size()));
    std::copy_n(m_body.cbegin(), count, data);
    m_body.remove(0, count);
    return count;
}

void CheckedImageReply::onSourceFinished()
{
    if (m_source->error() != NoError) {
        fail(m_source->error(), m_source->errorString());
        return;
    }
    m_body = m_source->readAll();
    const QString problem = imageProblem(m_body);
    if (!problem.isEmpty()) {
        qWarning() << "Refusing image" << url().toDisplayString(QUrl::RemoveQuery).left(200)
                   << problem;
        m_body.clear();
        fail(UnknownContentError, QStringLiteral("Image refused: ") + problem);
        return;
    }
    setFinished(true);
    Q_EMIT readyRead();
    Q_EMIT finished();
}

void CheckedImageReply::fail(NetworkError error, const QString &text)
{
    setError(error, text);
    setFinished(true);
    Q_EMIT errorOccurred(error);
    Q_EMIT finished();
}
