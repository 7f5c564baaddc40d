// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benchmarks.h"
#include "config/keys.h"
#include "process.h"
#include "simulator/simulator.h"

#include <QSettings>

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

namespace {

enum Quantity { Objects, Descriptors, Threads, Megabytes, QuantityCount };

/** What a process holds, with one value per sample. */
using Holdings = std::array<Sample, QuantityCount>;

Holdings holdings(const QString &program, const QStringList &arguments)
{
    Holdings held;
    const auto lines = MeasuredProcess(program, arguments).output().trimmed().split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> words = line.split(' '); // the first is the round
        if (words.size() != QuantityCount + 1)
            throw std::runtime_error("a sample is unreadable");
        for (size_t i = 0; i < held.size(); ++i)
            held[i].values.append(words[static_cast<int>(i) + 1].toDouble());
    }
    return held;
}

/** The largest difference of the quantity from the first sample of its run. */
double largestChange(const QVector<Holdings> &runs, Quantity quantity)
{
    double largest = 0;
    for (const Holdings &run : runs) {
        for (const double value : run[quantity].values)
            largest = std::max(largest, std::abs(value - run[quantity].values.first()));
    }
    return largest;
}

} // namespace

/**
 * The floor fetches the same bytes with Qt's own manager, walks through them, and builds a bare
 * view with a list of the titles. Its memory growth is unavoidable in such a program.
 */
void benchRefresh(Table &table, bool quick)
{
    simulator::Simulator simulator;
    if (!simulator.start())
        throw std::runtime_error("the simulator does not start");
    simulator.setSchedule(scheduleDocument(1'000, Times::QuarterHours));
    QSettings settings; // the kiosk's, in the folder that scripts/bench sets
    settings.clear();
    settings.setValue(keys::eventDataUrlTemplate, simulator.scheduleUrlTemplate());
    settings.setValue(keys::plenarLocationId, 1);
    settings.setValue(keys::refreshInterval, 3'600);
    settings.sync();

    const QString rounds = QString::number(quick ? 60 : 500);
    const QString url = QDate::currentDate().toString(simulator.scheduleUrlTemplate());
    QVector<Holdings> floor;
    QVector<Holdings> kiosk;
    for (int turn = 0; turn < (quick ? 1 : 2); ++turn) {
        floor.append(holdings(QStringLiteral(LUMENBOARD_FLOOR),
                              { QStringLiteral("--refresh"), url, rounds }));
        kiosk.append(holdings(QStringLiteral(LUMENBOARD_REFRESH_KIOSK), { rounds }));
    }

    const QString name = QStringLiteral("refresh: change of %1, rounds 20 to ") + rounds;
    const auto line = [&](const char *label, Quantity quantity, double figure, double limit) {
        table.add(name.arg(QLatin1String(label)), kiosk.last()[quantity].text(""),
                  floor.last()[quantity].text(""), figure, limit);
    };
    line("objects", Objects, largestChange(kiosk, Objects), 0);
    line("descriptors", Descriptors, largestChange(kiosk, Descriptors), 0);
    line("threads", Threads, largestChange(kiosk, Threads), 0);
    Sample growth;
    for (const Holdings &run : qAsConst(kiosk))
        growth.values.append(run[Megabytes].values.last() - run[Megabytes].values.first());
    line("dirty MB", Megabytes, growth.median(), largestChange(floor, Megabytes));
}
