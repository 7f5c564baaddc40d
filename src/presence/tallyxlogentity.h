// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "spool/spool.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QObject>
#include <QString>

/** The spool of presence records. */
[[nodiscard]] Spool tallyxSpool();

/**
 * A presence record: the person with this card arrived, left or was seen. The spool holds the same
 * JSON document that is sent. Lives in the attendance worker's thread.
 */
class TallyxLogEntity : public QObject
{
    Q_OBJECT

public:
    /** What is booked, with the values of the JSON document. */
    enum Type {
        AUTO = 0, ///< the service decides
        IN = 1,
        OUT = 2,
        CONTINUOUS = 3, ///< seen; the person was not asked
        TYPE_COUNT = 4
    };
    Q_ENUM(Type)

    /** The record of a card that has just been read, at the configured location. */
    TallyxLogEntity(quint64 transponderId, Type type, QObject *parent = nullptr);

    /** The record in the file @p path. Throws AttendanceErrorException if there is none. */
    explicit TallyxLogEntity(const QString &path, QObject *parent = nullptr);

    [[nodiscard]] Type type() const { return m_type; }
    void setType(Type type) { m_type = type; }
    [[nodiscard]] qint64 transponderId() const { return m_transponderId; }
    [[nodiscard]] int locationId() const { return m_locationId; }
    /** Milliseconds since the card was read. */
    [[nodiscard]] int age() const;
    /** Milliseconds from the card to the person's decision. */
    void setLogDelay(int msecs) { m_logDelay = msecs; }
    /** Milliseconds from the card to the sending. */
    void setTransmissionDelay(int msecs) { m_transmissionDelay = msecs; }
    /** The file with this record; empty until it is first saved. */
    [[nodiscard]] QString spoolPath() const { return m_spoolPath; }

    [[nodiscard]] QJsonDocument toJson() const;
    /** Writes the record to disk, over an earlier one. Throws AttendanceErrorException. */
    void save();
    /** True if the file of the record exists. */
    [[nodiscard]] bool isOnDisk() const;
    /** The type that is certainly in the file; TYPE_COUNT after a new type could not be saved. */
    [[nodiscard]] Type savedType() const { return m_savedType; }

private:
    void read(const QByteArray &document);

    Type m_type = AUTO;
    Type m_savedType = AUTO;
    QDateTime m_time;
    int m_logDelay = 0;
    int m_transmissionDelay = 0;
    qint64 m_transponderId = 0;
    int m_locationId = 0;
    QString m_spoolPath;
};
