// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMap>
#include <QObject>
#include <QString>

/**
 * The names that the attendance service last returned for cards, so that the screen can greet a
 * person before the service responds. Kept in a small XML file. Lives in the attendance worker's
 * thread.
 */
class AttendanceNameCache : public QObject
{
    Q_OBJECT

public:
    /** Loads the file. Logs a missing or broken one, and keeps the entries before the error. */
    explicit AttendanceNameCache(QObject *parent = nullptr);
    /** Saves the file if anything has changed. */
    ~AttendanceNameCache() override;

    void insert(quint64 transponderId, const QString &name);
    /** The name of a card's owner; empty if it is unknown. */
    [[nodiscard]] QString name(quint64 transponderId) const;

    /** Path of the file: from a variable, else from a setting, else in the local data. */
    [[nodiscard]] static QString fileName();

private Q_SLOTS:
    /** Writes the file if anything has changed. A failure is logged; the next call tries again. */
    void save();

private:
    void load();
    void read(const QByteArray &document);
    void write() const;

    QMap<quint64, QString> m_names; // not a hash: numbers in the file could all collide
    bool m_isDirty = false;
};
