// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "presence/tallyxlogentity.h"

#include "base/exceptions.h"
#include "base/json.h"
#include "config/config.h"
#include "config/keys.h"

#include <QDebug>
#include <QFile>
#include <QJsonObject>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

namespace key {
    const QString type = QStringLiteral("type");
    const QString time = QStringLiteral("time");
    const QString logDelay = QStringLiteral("logDelay");
    const QString transmissionDelay = QStringLiteral("transmissionDelay");
    const QString tid = QStringLiteral("tid");
    const QString locationId = QStringLiteral("locationId");
} // namespace key

constexpr int anyInt = std::numeric_limits<int>::max();

/** The whole number @p name of the document; nothing if missing or beyond +/- @p limit. */
std::optional<qint64> wholeNumber(const QJsonObject &object, const QString &name, qint64 limit)
{
    const double number = object.value(name).toDouble(std::numeric_limits<double>::quiet_NaN());
    const auto bound = static_cast<double>(limit);
    if (!(number >= -bound && number <= bound) || number != static_cast<double>(qint64(number)))
        return {};
    return qint64(number);
}

} // namespace

Spool tallyxSpool()
{
    return Spool({ "LB_TALLYX_SPOOL_DIR", keys::tallyxSpoolDir, QStringLiteral("spool/tallyx") });
}

TallyxLogEntity::TallyxLogEntity(quint64 transponderId, Type type, QObject *parent)
    : QObject(parent)
    , m_type(type)
    , m_time(QDateTime::currentDateTime())
    , m_transponderId(static_cast<qint64>(transponderId))
    , m_locationId(Config::instance()->plenarLocationId())
{
}

TallyxLogEntity::TallyxLogEntity(const QString &path, QObject *parent)
    : QObject(parent)
    , m_spoolPath(path)
{
    read(Spool::read(path));
}

int TallyxLogEntity::age() const
{
    // The clock may have been set meanwhile.
    const qint64 msecs = m_time.msecsTo(QDateTime::currentDateTime());
    return static_cast<int>(std::clamp<qint64>(msecs, -anyInt, anyInt));
}

QJsonDocument TallyxLogEntity::toJson() const
{
    return QJsonDocument(QJsonObject {
        { key::type, m_type },
        { key::time, m_time.toString(Qt::ISODate) },
        { key::logDelay, m_logDelay },
        { key::transmissionDelay, m_transmissionDelay },
        { key::tid, m_transponderId },
        { key::locationId, m_locationId },
    });
}

void TallyxLogEntity::save()
{
    const QByteArray document = toJson().toJson();
    if (m_savedType != m_type)
        m_savedType = TYPE_COUNT; // a failure may leave the old or the new type
    if (isOnDisk())
        Spool::replace(m_spoolPath, document);
    else // first save, or somebody has cleared the folder
        m_spoolPath = tallyxSpool().create(document);
    m_savedType = m_type;
}

bool TallyxLogEntity::isOnDisk() const
{
    return !m_spoolPath.isEmpty() && QFile::exists(m_spoolPath);
}

void TallyxLogEntity::read(const QByteArray &document)
{
    constexpr qint64 largestExact = 1LL << 53; // JSON numbers are doubles
    const QJsonObject object = readJson(document).object();
    const auto type = wholeNumber(object, key::type, TYPE_COUNT - 1);
    const auto logDelay = wholeNumber(object, key::logDelay, anyInt);
    const auto transmissionDelay = wholeNumber(object, key::transmissionDelay, anyInt);
    const auto tid = wholeNumber(object, key::tid, largestExact);
    const auto locationId = wholeNumber(object, key::locationId, anyInt);
    m_time = QDateTime::fromString(object.value(key::time).toString(), Qt::ISODate);
    if (!type || *type < 0 || !logDelay || !transmissionDelay || !tid || !locationId
        || !m_time.isValid()) {
        qWarning() << "Not a presence record:" << m_spoolPath;
        throw AttendanceErrorException(QStringLiteral("invalid tallyx request data"));
    }
    m_type = static_cast<Type>(*type);
    m_logDelay = static_cast<int>(*logDelay);
    m_transmissionDelay = static_cast<int>(*transmissionDelay);
    m_transponderId = *tid;
    m_locationId = static_cast<int>(*locationId);
}
