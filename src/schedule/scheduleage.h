// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QObject>
#include <QTimer>

/**
 * Knows when the shown schedule was read, and says so once that is too long ago: a screen without
 * network must not pass old data off as today's. GUI thread.
 */
class ScheduleAge : public QObject
{
    Q_OBJECT

public:
    explicit ScheduleAge(QObject *parent = nullptr);

    /** "As of …" once the last good schedule is older than two refresh intervals, else empty. */
    [[nodiscard]] QString asOf() const;

    /** A good schedule was read at @p when (local time). */
    void noteGoodRead(const QDateTime &when);

    /** A refresh failed; the text may have to name another day by now. */
    void noteFailedRead();

Q_SIGNALS:
    void asOfChanged();

private:
    QTimer m_expiry;
    QDateTime m_lastGood;
    bool m_expired = false;
};
