// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QObject>
#include <QTimer>

/**
 * Keeps the time of the last good schedule and announces it once the schedule is out of date: a
 * screen without network must not show old data as current. GUI thread.
 */
class ScheduleAge : public QObject
{
    Q_OBJECT

public:
    explicit ScheduleAge(QObject *parent = nullptr);

    /** True once a good schedule was read. */
    [[nodiscard]] bool hasSchedule() const { return m_lastGood.isValid(); }

    /** "As of …" once the last good schedule is older than two refresh intervals, else empty. */
    [[nodiscard]] QString asOf() const;

    /** A good schedule was read at @p when (local time). */
    void onReadSucceeded(const QDateTime &when);

    /** A refresh failed. Announces asOf() again, which includes the date from the next day on. */
    void onReadFailed();

Q_SIGNALS:
    void asOfChanged();

private:
    QTimer m_expiry;
    QDateTime m_lastGood;
    bool m_expired = false;
};
