// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benchmarks.h"
#include "config/keys.h"
#include "process.h"
#include "screen.h"
#include "simulator/simulator.h"

#include <QElapsedTimer>
#include <QSettings>
#include <QThread>
#include <QTime>

#include <chrono>
#include <cstdio>
#include <stdexcept>

using namespace std::chrono_literals;

namespace {

const auto kioskProgram = QStringLiteral(LUMENBOARD_PROGRAM);
const auto floorProgram = QStringLiteral(LUMENBOARD_FLOOR);

/** Time from the start of the process until the display shows its content. */
double firstFrameMs(const Screen &screen, const QString &program)
{
    constexpr unsigned long pollInterval = 500; // microseconds
    constexpr qint64 timeoutMs = 20'000;

    QElapsedTimer clock;
    const auto waitFor = [&](bool content) {
        clock.start();
        while (screen.showsContent() != content) {
            if (clock.hasExpired(timeoutMs))
                throw std::runtime_error("the display does not show what was expected");
            QThread::usleep(pollInterval);
        }
    };
    waitFor(false); // the last program is gone
    QElapsedTimer sinceStart;
    sinceStart.start();
    const MeasuredProcess process(program);
    waitFor(true);
    return static_cast<double>(sinceStart.nsecsElapsed()) / 1e6;
}

void benchFirstFrame(Table &table, int rounds)
{
    const Screen screen(qEnvironmentVariable("LUMENBOARD_BENCH_SCREEN"));
    Sample kiosk;
    Sample floor;
    for (int round = -1; round < rounds; ++round) {
        const double floorMs = firstFrameMs(screen, floorProgram);
        const double kioskMs = firstFrameMs(screen, kioskProgram);
        if (round < 0)
            continue; // warm-up
        floor.values.append(floorMs);
        kiosk.values.append(kioskMs);
    }
    table.addRatio(QStringLiteral("startup: first frame with content, warm"), " ms", kiosk, floor,
                   1.15, 0.9);
}

void sleepFor(std::chrono::milliseconds time)
{
    QThread::msleep(static_cast<unsigned long>(time.count()));
}

/**
 * Measures one program at a time: a window's picture counts as shared with the display while it is
 * visible, but as private memory behind another window.
 */
double dirtyMbAlone(const QString &program)
{
    const MeasuredProcess process(program);
    sleepFor(20s);
    return process.dirtyMb();
}

void benchMemory(Table &table, int rounds)
{
    Sample kiosk;
    Sample floor;
    // The first run compiles the shaders of all frames, which stay in its memory; later runs load
    // them.
    for (const QString &program : { floorProgram, kioskProgram })
        (void)dirtyMbAlone(program);
    for (int round = 0; round < rounds; ++round) {
        floor.values.append(dirtyMbAlone(floorProgram));
        kiosk.values.append(dirtyMbAlone(kioskProgram));
    }
    table.addRatio(QStringLiteral("startup: dirty memory after 20 s"), " MB", kiosk, floor, 1.05,
                   0.75);
}

/** Avoids a refresh while measuring: with the settings below the kiosk refreshes on the hour. */
void waitForQuietTime(std::chrono::seconds needed)
{
    constexpr std::chrono::milliseconds hour = 1h;
    constexpr auto refreshTime = 15s;
    const auto left
        = hour - std::chrono::milliseconds(QTime::currentTime().msecsSinceStartOfDay()) % hour;
    if (left > needed + refreshTime)
        return;
    std::fputs("Waiting for the full hour to pass ...\n", stderr);
    sleepFor(left + refreshTime);
}

void benchScheduleIdle(Table &table, std::chrono::seconds startDelay, std::chrono::seconds time)
{
    MeasuredProcess process(kioskProgram);
    sleepFor(startDelay);
    const int framesBefore = process.frames();
    const auto switchesBefore = process.switches();
    sleepFor(time);
    const auto switches = process.switches();
    qint64 wakeUps = 0;
    for (auto thread = switches.begin(); thread != switches.end(); ++thread)
        wakeUps += thread.value() - switchesBefore.value(thread.key());
    const auto perTime = QStringLiteral("%1 in %2 s");
    const auto seconds = static_cast<double>(time.count());
    const int repaints = process.frames() - framesBefore;
    table.add(QStringLiteral("schedule view idle: repaints"), perTime.arg(repaints).arg(seconds),
              QStringLiteral("-"), repaints, 0);
    table.add(QStringLiteral("schedule view idle: wake-ups per second"),
              perTime.arg(wakeUps).arg(seconds), QStringLiteral("-"),
              static_cast<double>(wakeUps) / seconds, 0.5);
}

void benchClockIdle(Table &table, std::chrono::seconds startDelay, std::chrono::seconds time,
                    int rounds)
{
    // Side by side, so that both show the same minutes.
    MeasuredProcess floorProcess(floorProgram, { QStringLiteral("--clock") });
    MeasuredProcess kioskProcess(kioskProgram);
    sleepFor(startDelay);
    const int kioskFrames = kioskProcess.frames();
    const int floorFrames = floorProcess.frames();
    Sample kiosk;
    Sample floor;
    for (int round = 0; round < rounds; ++round) {
        const double kioskBefore = kioskProcess.cpuMs();
        const double floorBefore = floorProcess.cpuMs();
        sleepFor(time);
        kiosk.values.append(kioskProcess.cpuMs() - kioskBefore);
        floor.values.append(floorProcess.cpuMs() - floorBefore);
    }
    table.addRatio(QStringLiteral("clock view idle: CPU a minute (%1 repaints, floor %2)")
                       .arg(kioskProcess.frames() - kioskFrames)
                       .arg(floorProcess.frames() - floorFrames),
                   " ms", kiosk, floor, 1);
}

} // namespace

void benchStartup(Table &table, bool quick)
{
    const auto startDelay = quick ? 5s : 20s;
    const auto idle = quick ? 15s : 60s;
    const int rounds = quick ? 3 : 21;
    const int slowRounds = quick ? 1 : 5;

    simulator::Simulator simulator;
    if (!simulator.start())
        throw std::runtime_error("the simulator does not start");
    QSettings settings; // the kiosk's, in the folder that scripts/bench sets
    settings.setValue(keys::eventDataUrlTemplate, simulator.scheduleUrlTemplate());
    settings.setValue(keys::plenarLocationId, 1);
    settings.setValue(keys::locationName, QStringLiteral("Kiosk 1"));
    settings.setValue(keys::refreshInterval, 3'600);
    // No line about the missing reader.
    settings.setValue(keys::attendanceEnabled, false);
    settings.setValue(keys::tallyxMode, 0);
    settings.sync();
    qputenv("QT_LOGGING_RULES", "*.debug=false;qt.scenegraph.time.renderloop.debug=true");

    benchFirstFrame(table, rounds);
    benchMemory(table, slowRounds);
    waitForQuietTime(startDelay + idle);
    simulator.setSchedule(quietDocument(QDateTime::currentDateTime()));
    benchScheduleIdle(table, startDelay, idle);
    waitForQuietTime(startDelay + slowRounds * idle);
    settings.setValue(keys::defaultView, 0); // the clock
    settings.sync();
    benchClockIdle(table, startDelay, idle, slowRounds);
}
