// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QHash>
#include <QObject>
#include <QString>

class QIODevice;

/**
 * The names that the attendance service gave for cards, so that a person is greeted before it has
 * answered again. Kept in a small XML file. Lives in the attendance worker's thread.
 */
class AttendanceNameCache : public QObject
{
    Q_OBJECT

public:
    /** Loads the file. A missing or broken one is logged, and what could be read of it counts. */
    explicit AttendanceNameCache(QObject *parent = nullptr);
    /** Saves what has changed. */
    ~AttendanceNameCache() override;

    void insert(quint64 transponderId, const QString &name);
    /** The name of a card's owner, empty when it is not known. */
    [[nodiscard]] QString name(quint64 transponderId) const;

    /** Where the names are kept: by variable, else by setting, else with the local data. */
    [[nodiscard]] static QString fileName();

private Q_SLOTS:
    /** Writes the file if anything has changed; a failure is logged and leaves that to do. */
    void save();

private:
    void load();
    void read(QIODevice &device);
    void write() const;

    QHash<quint64, QString> m_names;
    bool m_isDirty = false;
};
