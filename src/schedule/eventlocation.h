// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "schedule/event.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QQmlListProperty>

/**
 * A room of the schedule with its events in order. Owned by its EventData; GUI thread.
 *
 * Emits nothing when only time passes; EventBoundaryTimer does that.
 */
class EventLocation : public QObject
{
    Q_OBJECT
    Q_PROPERTY(qlonglong id READ id CONSTANT)
    Q_PROPERTY(int displayOrder READ displayOrder CONSTANT)
    Q_PROPERTY(QString shortName READ shortName CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QQmlListProperty<Event> events READ eventsProperty NOTIFY eventsChanged)
    Q_PROPERTY(Event *currentEvent READ currentEvent NOTIFY eventsChanged)
    Q_PROPERTY(Event *nextEvent READ nextEvent NOTIFY eventsChanged)

public:
    explicit EventLocation(QObject *parent = nullptr);
    EventLocation(qint64 id, int displayOrder, const QString &shortName, const QString &name,
                  QObject *parent = nullptr);

    [[nodiscard]] qint64 id() const { return m_id; }
    [[nodiscard]] int displayOrder() const { return m_displayOrder; }
    [[nodiscard]] QString shortName() const { return m_shortName; }
    [[nodiscard]] QString name() const { return m_name; }
    [[nodiscard]] QQmlListProperty<Event> eventsProperty() { return { this, &m_events }; }
    [[nodiscard]] const QList<Event *> &events() const { return m_events; }

    /** The first event that runs now, including its start and end; null if there is none. */
    [[nodiscard]] Event *currentEvent() const;
    [[nodiscard]] Event *currentEvent(const QDateTime &now) const;

    /** The first event that starts after now; null if there is none. */
    [[nodiscard]] Event *nextEvent() const;
    [[nodiscard]] Event *nextEvent(const QDateTime &now) const;

    /** The first change of the current or next event after @p now; invalid if there is none. */
    [[nodiscard]] QDateTime nextBoundary(const QDateTime &now) const;

Q_SIGNALS:
    void eventsChanged();

private Q_SLOTS:
    void updateRefs();

private:
    friend class EventData; // links its objects

    /** The end of the events that have started; the events are sorted by start. */
    [[nodiscard]] QList<Event *>::const_iterator startedBy(const QDateTime &now) const;

    qint64 m_id = 0;
    int m_displayOrder = 0;
    QString m_shortName;
    QString m_name;
    QList<Event *> m_events;
};
