// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QVector>

class StoredStatus;

/** How a screen does. The numbers are those of the metric lumenboard_health. */
enum class Health { Healthy = 0, Degraded = 1, Failing = 2, NotRunning = 3 };

/** One thing that can be wrong with a running screen. */
struct Problem
{
    QString name; ///< for programs
    Health level; ///< Degraded or Failing
    QString text; ///< for a technician; empty if it is not there
};

/** All problems that are known of, each with its text if it is there. */
[[nodiscard]] QVector<Problem> findProblems(const StoredStatus &status);

/** The worst level of the @p problems that are there. */
[[nodiscard]] Health healthOf(const StoredStatus &status, const QVector<Problem> &problems);

/** "healthy", "degraded", "failing" or "not running". */
[[nodiscard]] QString nameOf(Health health);

/** The exit status of "--status"; 1 is for wrong options. */
[[nodiscard]] int exitStatusOf(Health health);
