// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/reason.h"

#include <QNetworkReply>

#include <cerrno>

namespace {

constexpr int successClass = 2; // 200 to 299

int classOf(int status)
{
    return status / 100;
}

} // namespace

QString Reason::ofReply(const QNetworkReply &reply)
{
    const QNetworkReply::NetworkError error = reply.error();
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (classOf(status) == successClass && error != QNetworkReply::NoError)
        return tr("The response of the service is incomplete.");
    if (status != 0)
        return ofStatus(status);

    switch (error) {
    case QNetworkReply::OperationCanceledError: // after its time limit
    case QNetworkReply::TimeoutError:
        return tr("The service does not answer.");
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::RemoteHostClosedError:
        return tr("The service accepts no connection.");
    case QNetworkReply::SslHandshakeFailedError:
        return tr("The connection to the service is not secure. Are its certificate and the clock "
                  "right?");
    case QNetworkReply::ProtocolUnknownError:
        return tr("The address of the service is set wrongly.");
    default:
        return tr("The service cannot be found. Is this device connected to the network?");
    }
}

QString Reason::ofStatus(int status)
{
    switch (status) {
    case 0:
        return tr("The service cannot be reached.");
    case 401:
    case 403:
    case 407:
        return tr("The service does not admit this device (error %1).").arg(status);
    case 404:
    case 410:
        return tr("The service does not find what it was asked for (error %1).").arg(status);
    default:
        break;
    }
    switch (classOf(status)) {
    case successClass:
        return tr("The service gives an unreadable response.");
    case 3:
        return tr("The service refers to another address (error %1).").arg(status);
    case 4:
        return tr("The service refuses the request (error %1).").arg(status);
    default:
        return tr("The service is out of order (error %1).").arg(status);
    }
}

QString Reason::ofDisk(int error)
{
    if (error == ENOSPC || error == EDQUOT)
        return tr("The storage of this device is full.");
    return tr("The storage of this device cannot be written to.");
}
