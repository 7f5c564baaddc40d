// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "schedule/scheduleindex.h"
#include "schedule/scheduleobjects.h"

#include <QByteArray>
#include <QString>
#include <QThread>

#include <functional>

/** What was read of a document: the objects, without parents, and the failure that ended it. */
struct ReadSchedule
{
    ScheduleObjects objects; ///< the taker deletes them
    ScheduleIndex index;
    QString failure; ///< for the log; empty after success
    QString shownFailure; ///< for the person at the screen; empty if unknown
};

/**
 * Reads @p document, sorts and links. Stops with a failure once @p mustStop, which is asked now and
 * then, returns true. For any thread; the objects live in the calling one.
 */
[[nodiscard]] ReadSchedule readSchedule(const QByteArray &document,
                                        const std::function<bool()> &mustStop);

/**
 * Reads one document, whatever it holds, without a pause for the interface. Belongs to the thread
 * that creates it, and moves the objects there. An interruption ends it early and without objects.
 * Deletes itself when it has ended.
 */
class ScheduleThread : public QThread
{
    Q_OBJECT

public:
    explicit ScheduleThread(const QByteArray &document);
    ~ScheduleThread() override;

    /** The schedule, to be called once the thread has finished. */
    [[nodiscard]] ReadSchedule takeSchedule();

protected:
    void run() override;

private:
    QByteArray m_document;
    ReadSchedule m_schedule;
};
