// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benchmarks.h"
#include "config/keys.h"
#include "process.h"
#include "screen.h"
#include "simulator/simulator.h"
#include "simulator/virtualreader.h"

#include <QElapsedTimer>
#include <QSettings>
#include <QThread>

#include <functional>
#include <stdexcept>

namespace {

constexpr unsigned long startMs = 6'000; // by then the deferred work of a start is done
constexpr unsigned long slideMs = 1'000; // until the notice stands still
constexpr unsigned long shownMs = 4'000; // less than is left of the default countdown

void waitUntil(const std::function<bool()> &isReached, const char *error)
{
    constexpr qint64 timeoutMs = 20'000;
    constexpr unsigned long pollMs = 5;

    QElapsedTimer clock;
    for (clock.start(); !isReached(); QThread::msleep(pollMs)) {
        if (clock.hasExpired(timeoutMs))
            throw std::runtime_error(error);
    }
}

/** Seconds of all processors that the program uses in a second. */
double cpuPerSecond(const MeasuredProcess &process)
{
    QElapsedTimer clock;
    clock.start();
    const double before = process.cpuMs();
    QThread::msleep(shownMs);
    return (process.cpuMs() - before) / static_cast<double>(clock.elapsed());
}

double floorCpu()
{
    const MeasuredProcess floor(QStringLiteral(LUMENBOARD_FLOOR), { QStringLiteral("--pulse") });
    QThread::msleep(startMs);
    return cpuPerSecond(floor);
}

double kioskCpu(const simulator::Simulator &simulator, simulator::VirtualReader &reader,
                const QProcessEnvironment &environment)
{
    const auto queries
        = [&simulator] { return simulator.requestCount(simulator::Route::PresenceStatus); };

    const Screen screen(qEnvironmentVariable("LUMENBOARD_BENCH_SCREEN"));
    MeasuredProcess kiosk(QStringLiteral(LUMENBOARD_PROGRAM), {}, environment);
    waitUntil([&] { return kiosk.log().contains("Serial port opened."); },
              "the kiosk does not open its reader");
    QThread::msleep(startMs);
    const quint64 idle = screen.noticeSide();
    const int before = queries();
    reader.tap("0A1B2C3E");
    waitUntil([&] { return screen.noticeSide() != idle; }, "a tap is not seen on the screen");
    QThread::msleep(slideMs);
    if (queries() == before)
        throw std::runtime_error("the kiosk does not ask for the status");
    return cpuPerSecond(kiosk);
}

} // namespace

/**
 * The processor time that a presence question takes while it waits for the person, with glow and
 * countdown. The floor pulses one rectangle on a bare page.
 */
void benchQuestion(Table &table, bool quick)
{
    const int rounds = quick ? 1 : 7;

    simulator::SerialBus bus; // before any thread
    simulator::Simulator simulator;
    if (!simulator.start())
        throw std::runtime_error("the simulator does not start");
    simulator::VirtualReader reader(bus);
    if (!reader.plug())
        throw std::runtime_error("the reader can not be plugged in");
    auto environment = QProcessEnvironment::systemEnvironment();
    const auto variables = bus.environment();
    for (auto variable = variables.begin(); variable != variables.end(); ++variable)
        environment.insert(variable.key(), variable.value());

    QSettings settings; // the kiosk's, in the folder that scripts/bench sets
    settings.clear();
    const auto addresses = simulator.kioskSettings();
    for (auto address = addresses.begin(); address != addresses.end(); ++address)
        settings.setValue(address.key(), address.value());
    settings.setValue(keys::plenarLocationId, 1);
    settings.setValue(keys::refreshInterval, 3'600);
    settings.setValue(keys::attendanceEnabled, false); // no second notice
    settings.sync();

    Sample kiosk;
    Sample floor;
    for (int round = 0; round < rounds; ++round) {
        floor.values.append(floorCpu());
        kiosk.values.append(kioskCpu(simulator, reader, environment));
    }
    table.add(QStringLiteral("question: CPU seconds per shown second"), kiosk.text(" s"),
              floor.text(" s"), kiosk.median(), 0.5);
}
