// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

/** A group of people that events are meant for. Owned by its EventData; GUI thread. */
class EventAudience : public QObject
{
    Q_OBJECT
    Q_PROPERTY(qlonglong id READ id CONSTANT)
    Q_PROPERTY(int displayOrder READ displayOrder CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)

public:
    explicit EventAudience(QObject *parent = nullptr);
    EventAudience(qint64 id, int displayOrder, const QString &name, QObject *parent = nullptr);

    [[nodiscard]] qint64 id() const { return m_id; }
    [[nodiscard]] int displayOrder() const { return m_displayOrder; }
    [[nodiscard]] QString name() const { return m_name; }

    /** By display order, then by name: case-sensitive, unlike locations. */
    static bool sortsBefore(const EventAudience *a, const EventAudience *b);

private:
    qint64 m_id = 0;
    int m_displayOrder = 0;
    QString m_name;
};
