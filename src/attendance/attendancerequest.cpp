// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "attendance/attendancerequest.h"

#include "attendance/attendanceresponse.h"
#include "attendance/attendancesignature.h"
#include "base/exceptions.h"
#include "base/reason.h"
#include "config/config.h"
#include "config/keys.h"
#include "net/errortext.h"
#include "net/http.h"

#include <QDebug>
#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <memory>
#include <utility>

namespace {

namespace element {
    const QString root = QStringLiteral("attendance");
    const QString clientTime = QStringLiteral("clientTime");
    const QString lag = QStringLiteral("lag");
    const QString locationId = QStringLiteral("locationId");
    const QString transponderId = QStringLiteral("transponderId");
} // namespace element

} // namespace

Spool attendanceSpool()
{
    return Spool({ "LB_ATTENDANCE_SPOOL_DIR", keys::attendanceSpoolDir,
                   QStringLiteral("spool/attendance") });
}

AttendanceRequest::AttendanceRequest(quint64 transponderId, QObject *parent)
    : QObject(parent)
    , m_requestTime(QDateTime::currentDateTime())
    , m_isDelayed(false)
    , m_transponderId(transponderId)
{
    m_locationId = Config::instance()->plenarLocationId();
}

AttendanceRequest::AttendanceRequest(const QString &spoolPath, QObject *parent)
    : QObject(parent)
    , m_isDelayed(true)
    , m_spoolPath(spoolPath)
{
    QXmlStreamReader reader(Spool::read(spoolPath));
    read(reader);
}

bool AttendanceRequest::isOnDisk() const
{
    return !m_spoolPath.isEmpty() && QFile::exists(m_spoolPath);
}

void AttendanceRequest::build()
{
    m_data.clear();
    QXmlStreamWriter writer(&m_data);
    writer.writeStartDocument();
    writer.writeStartElement(element::root);
    writer.writeTextElement(element::clientTime, m_requestTime.toString(Qt::ISODate));
    if (m_isDelayed) {
        const qint64 lag = QDateTime::currentMSecsSinceEpoch() - m_requestTime.toMSecsSinceEpoch();
        writer.writeTextElement(element::lag, QString::number(lag));
    }
    writer.writeTextElement(element::locationId, QString::number(m_locationId));
    writer.writeTextElement(element::transponderId, QString::number(m_transponderId));
    writer.writeEndDocument();
}

void AttendanceRequest::send(QNetworkAccessManager &manager, const RequestLimits &limits)
{
    QNetworkRequest request = http::request(Config::instance()->attendanceLogUrl());
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/xml"));
    request.setRawHeader(
        QByteArrayLiteral("X-Plenar-Token"),
        attendanceToken(m_data, QDateTime::currentMSecsSinceEpoch(), attendanceNonce()));
    m_reply = http::post(manager, request, m_data, limits);
    m_reply->setParent(this);
    connect(m_reply, &QNetworkReply::finished, this, &AttendanceRequest::onFinished);
}

void AttendanceRequest::onFinished()
{
    const QPointer<QNetworkReply> reply = std::exchange(m_reply, {});
    reply->deleteLater();
    RecordOutcome outcome;
    outcome.hasResponse = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
    std::unique_ptr<AttendanceResponse> response;
    const QString error = networkError(*reply);
    if (!error.isEmpty())
        outcome.failure = Failure::temporary(error, Reason::ofReply(*reply));
    else
        outcome.failure = catchFailure(
            [&] { response = std::make_unique<AttendanceResponse>(reply->readAll()); });
    Q_EMIT finished(outcome, response.get());
}

void AttendanceRequest::read(QXmlStreamReader &reader)
{
    bool hasTransponder = false;
    bool isGood = reader.readNextStartElement() && reader.name() == element::root;
    while (isGood && reader.readNextStartElement()) {
        const QString name = reader.name().toString();
        const QString text = reader.readElementText(QXmlStreamReader::SkipChildElements);
        if (name == element::clientTime) {
            m_requestTime = QDateTime::fromString(text, Qt::ISODate);
        } else if (name == element::locationId) {
            m_locationId = text.toInt(&isGood);
        } else if (name == element::transponderId) {
            m_transponderId = text.toULongLong(&isGood);
            hasTransponder = true;
        }
    }
    while (isGood && !reader.atEnd())
        reader.readNext();
    if (isGood && hasTransponder && m_requestTime.isValid() && !reader.hasError())
        return;
    qWarning() << "Not an attendance record:" << m_spoolPath << reader.errorString();
    throw AttendanceErrorException(QStringLiteral("invalid attendance request data"));
}
