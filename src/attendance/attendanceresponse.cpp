// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "attendance/attendanceresponse.h"

#include "base/exceptions.h"
#include "base/xmlguard.h"
#include "notifications/noticelimits.h"
#include "notifications/notification.h"

#include <QDebug>
#include <QMetaEnum>
#include <QXmlStreamReader>

#include <algorithm>
#include <limits>

namespace {

QString readText(QXmlStreamReader &reader)
{
    return reader.readElementText(QXmlStreamReader::SkipChildElements)
        .left(noticelimits::maxTextLength);
}

} // namespace

AttendanceResponse::AttendanceResponse(const QByteArray &body, QObject *parent)
    : QObject(parent)
{
    read(body);
    check();
}

void AttendanceResponse::log() const
{
    qDebug() << "Attendance logged:" << m_serverTime << m_clientTime << m_name << "Type" << m_type
             << m_title << m_message << m_timeout;
}

uint AttendanceResponse::timeout() const
{
    constexpr qint64 maximum = std::numeric_limits<int>::max();
    if (m_timeout < 0) // 0 would show the notice for ever
        return noticelimits::temporaryMs;
    return static_cast<uint>(std::min(m_timeout, maximum));
}

/** Throws @p source, an untranslated message, for the log and translated for the person. */
void AttendanceResponse::refuse(const char *source)
{
    throw AttendanceErrorException(QString::fromLatin1(source), tr(source));
}

void AttendanceResponse::read(const QByteArray &body)
{
    QXmlStreamReader reader;
    if (!xmlguard::readRoot(reader, body) || reader.name() != QLatin1String("attendanceResponse")) {
        qWarning() << "AttendanceResponse(): unexpected document" << reader.name()
                   << reader.errorString();
        refuse(QT_TR_NOOP("Invalid server response (1)."));
    }
    while (reader.readNextStartElement())
        readElement(reader);
    while (!reader.atEnd())
        reader.readNext();
    if (reader.hasError()) {
        qWarning() << "AttendanceResponse(): error reading XML" << reader.error()
                   << reader.errorString();
        refuse(QT_TR_NOOP("Invalid server response (2)."));
    }
}

void AttendanceResponse::readElement(QXmlStreamReader &reader)
{
    const QString element = reader.name().toString();
    if (element == QLatin1String("serverTime")) {
        m_serverTime = QDateTime::fromString(readText(reader), Qt::ISODate);
    } else if (element == QLatin1String("clientTime")) {
        m_clientTime = QDateTime::fromString(readText(reader), Qt::ISODate);
    } else if (element == QLatin1String("name")) {
        m_name = readText(reader);
    } else if (element == QLatin1String("notificationType")) {
        m_type = QMetaEnum::fromType<Notification::Type>().keyToValue(
            readText(reader).toUtf8().constData(), &m_hasType);
        m_hasType &= m_type < Notification::TYPE_COUNT;
    } else if (element == QLatin1String("title")) {
        m_title = readText(reader);
    } else if (element == QLatin1String("message")) {
        m_message = readText(reader);
    } else if (element == QLatin1String("timeout")) {
        m_timeout = readText(reader).toLongLong(&m_hasTimeout);
    } else {
        qWarning() << "AttendanceResponse(): unknown element" << element;
        reader.skipCurrentElement();
    }
}

void AttendanceResponse::check() const
{
    if (m_serverTime.isValid() && m_clientTime.isValid() && m_hasType && m_hasTimeout)
        return;
    qWarning() << "AttendanceResponse(): invalid values" << m_serverTime << m_clientTime << "Type"
               << m_type << "Timeout" << m_timeout << m_hasTimeout;
    refuse(QT_TR_NOOP("Invalid server response (3)."));
}
