// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QVector>

/** The same quantity, measured several times. */
struct Sample
{
    QVector<double> values;

    [[nodiscard]] double median() const;
    /** Only one value in twenty is greater. */
    [[nodiscard]] double high() const;
    /** "median unit (least..most)" */
    [[nodiscard]] QString text(const char *unit) const;
};

/** The results of a run, a line per figure, printed in the end. */
class Table
{
public:
    static constexpr double none = -1; ///< no limit, or no aim

    /** A line for a @p figure; @p measured and @p floor tell where it comes from. */
    void add(const QString &what, const QString &measured, const QString &floor, double figure,
             double limit, double aim = none);
    /** A line for the ratio of the medians. */
    void addRatio(const QString &what, const char *unit, const Sample &measured,
                  const Sample &floor, double limit, double aim = none);
    /** A line for the ratio of the slow ones: that of the 95th percentiles. */
    void addHighRatio(const QString &what, const char *unit, const Sample &measured,
                      const Sample &floor, double limit, double aim = none);
    /** A line for the ratio of the median rates, which may not be less than @p least. */
    void addRateRatio(const QString &what, const char *unit, const Sample &measured,
                      const Sample &floor, double least);
    void print() const;

private:
    QVector<QStringList> m_lines;
};

/** How the starts of the events lie: as on a real day, or no two alike (nothing to remember). */
enum class Times { QuarterHours, Distinct };

/**
 * A schedule document with @p events events, and rooms and groups in proportion, so that a search
 * through all of them for each event would show. Without white space between the elements: that
 * makes the token walk cheap, and the comparison with it strict.
 */
[[nodiscard]] QByteArray scheduleDocument(int events, Times times);

/** A day of room 1 around @p now whose events neither start nor end for two hours. */
[[nodiscard]] QByteArray quietDocument(const QDateTime &now);

/**
 * Each compares the program with a floor in one run, in turns, and adds its lines to the table;
 * throws std::runtime_error if it can not. A quick run has a few short rounds: it shows that the
 * benchmark works, its figures mean little.
 */
void benchSchedule(Table &table, bool quick);
void benchStartup(Table &table, bool quick);
void benchRefresh(Table &table, bool quick);
void benchAttendance(Table &table, bool quick);
void benchDrain(Table &table, bool quick);
