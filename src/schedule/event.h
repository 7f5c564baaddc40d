// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "schedule/eventeaudience.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QQmlListProperty>
#include <QStringList>

class EventLocation;
class ScheduleIndex;

/** The values of an event in the document. Times are local unless the document has an offset. */
struct EventFields
{
    qint64 id = 0;
    QDateTime start;
    QDateTime end;
    QString title;
    QString shortTitle;
    QString subTitle;
    QString description;
    QStringList speakers;
    qint64 locationId = 0; ///< 0: none
};

/** One event of the schedule. Owned by its EventData; GUI thread. */
class Event : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int id READ id CONSTANT)
    Q_PROPERTY(QDateTime start READ start CONSTANT)
    Q_PROPERTY(QDateTime end READ end CONSTANT)
    Q_PROPERTY(QString startDateStr READ startDateStr CONSTANT)
    Q_PROPERTY(QString startEndTimeStr READ startEndTimeStr CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString shortTitle READ shortTitle CONSTANT)
    Q_PROPERTY(QString subTitle READ subTitle CONSTANT)
    Q_PROPERTY(QString description READ description CONSTANT)
    Q_PROPERTY(QString speakers READ speakers CONSTANT)
    Q_PROPERTY(EventLocation *location READ location NOTIFY locationChanged)
    Q_PROPERTY(
        QQmlListProperty<EventEAudience> audiences READ audiencesProperty NOTIFY audiencesChanged)
    Q_PROPERTY(QString mAudiencesStr READ mAudiencesStr NOTIFY audiencesChanged)
    Q_PROPERTY(QString oAudiencesStr READ oAudiencesStr NOTIFY audiencesChanged)

public:
    explicit Event(QObject *parent = nullptr);
    /** Takes @p audiences as children. */
    Event(EventFields fields, QList<EventEAudience *> audiences, QObject *parent = nullptr);

    [[nodiscard]] int id() const { return static_cast<int>(m_fields.id); }
    [[nodiscard]] QDateTime start() const { return m_fields.start; }
    [[nodiscard]] QDateTime end() const { return m_fields.end; }
    /** The day of the start in the long format of the default locale. */
    [[nodiscard]] QString startDateStr() const;
    /** "start - end" as times in the short format of the default locale. */
    [[nodiscard]] QString startEndTimeStr() const;
    [[nodiscard]] QString title() const { return m_fields.title; }
    [[nodiscard]] QString shortTitle() const { return m_fields.shortTitle; }
    [[nodiscard]] QString subTitle() const { return m_fields.subTitle; }
    [[nodiscard]] QString description() const { return m_fields.description; }
    /** All speakers, separated by ", ". */
    [[nodiscard]] QString speakers() const;
    [[nodiscard]] qint64 locationId() const { return m_fields.locationId; }
    /** Null until the event is linked, or if the id is not in the schedule. */
    [[nodiscard]] EventLocation *location() const { return m_location; }
    [[nodiscard]] QQmlListProperty<EventEAudience> audiencesProperty()
    {
        return { this, &m_audiences };
    }
    /** Names of the mandatory groups; an unknown group is "null". */
    [[nodiscard]] QString mAudiencesStr() const { return audienceNames(true); }
    /** Names of the optional groups; an unknown group is "null". */
    [[nodiscard]] QString oAudiencesStr() const { return audienceNames(false); }

    /** Links the audience groups; to be called before the event is shown. */
    void linkAudiences(const ScheduleIndex &index);

    /** By start, then end, then title in code-unit order. */
    static bool sortsBefore(const Event *a, const Event *b);

Q_SIGNALS:
    void locationChanged();
    void audiencesChanged();

private Q_SLOTS:
    void updateRefs();

private:
    friend class EventData; // links its objects

    [[nodiscard]] QString audienceNames(bool mandatory) const;

    EventFields m_fields;
    EventLocation *m_location = nullptr;
    QList<EventEAudience *> m_audiences;
};
