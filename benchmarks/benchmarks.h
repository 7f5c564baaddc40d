// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QVector>

/** Measured values of one quantity. */
struct Sample
{
    QVector<double> values;

    [[nodiscard]] double median() const;
    /** The 95th percentile. */
    [[nodiscard]] double high() const;
    /** "median unit (min..max)" */
    [[nodiscard]] QString text(const char *unit) const;
};

/** The results of a run, one line per figure. */
class Table
{
public:
    static constexpr double none = -1; ///< no limit, or no aim

    /** A line for a @p figure calculated from @p measured and @p floor. */
    void add(const QString &what, const QString &measured, const QString &floor, double figure,
             double limit, double aim = none);
    /** A line for the ratio of the medians. */
    void addRatio(const QString &what, const char *unit, const Sample &measured,
                  const Sample &floor, double limit, double aim = none);
    /** A line for the ratio of the 95th percentiles. */
    void addHighRatio(const QString &what, const char *unit, const Sample &measured,
                      const Sample &floor, double limit, double aim = none);
    /** A line for the ratio of the median rates, which must be at least @p min. */
    void addRateRatio(const QString &what, const char *unit, const Sample &measured,
                      const Sample &floor, double min);
    void print() const;

private:
    QVector<QStringList> m_lines;
};

/** Start times of the events: as on a real day, or all different (so that no cache helps). */
enum class Times { QuarterHours, Distinct };

/**
 * A schedule document with @p events events and a proportional number of rooms and groups, so that
 * a linear search per event would show. It has no white space between the elements: that keeps the
 * token walk cheap and the comparison strict.
 */
[[nodiscard]] QByteArray scheduleDocument(int events, Times times);

/** A day on which no event of room 1 starts or ends in the two hours after @p now. */
[[nodiscard]] QByteArray quietDocument(const QDateTime &now);

/**
 * Each benchmark compares the program with a floor in alternating rounds and adds its lines to the
 * table. Throws std::runtime_error on failure. A quick run has few, short rounds: it only shows
 * that the benchmark works.
 */
void benchSchedule(Table &table, bool quick);
void benchStartup(Table &table, bool quick);
void benchRefresh(Table &table, bool quick);
void benchAttendance(Table &table, bool quick);
void benchQuestion(Table &table, bool quick);
void benchDrain(Table &table, bool quick);
