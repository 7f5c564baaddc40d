// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benchmarks.h"
#include "config/keys.h"
#include "process.h"
#include "simulator/simulator.h"

#include <QElapsedTimer>
#include <QSettings>
#include <QThread>
#include <QTime>
#include <QtEndian>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <stdexcept>

using namespace std::chrono_literals;

namespace {

const auto kioskProgram = QStringLiteral(LUMENBOARD_PROGRAM);
const auto floorProgram = QStringLiteral(LUMENBOARD_FLOOR);

/**
 * The picture of the virtual display, looked at from outside.
 *
 * Xvfb keeps its picture in a file that it maps to memory (-fbdir), and this maps the same file.
 * So a look costs neither side a request, needs nothing in the programs that are looked at, and
 * sees what a person would: not that a frame was drawn, but that it has arrived.
 */
class Screen
{
public:
    Screen();

    /** Whether light text stands in the upper right, where both programs show their content. */
    [[nodiscard]] bool showsContent() const;

private:
    QFile m_file { qEnvironmentVariable("LUMENBOARD_BENCH_SCREEN") };
    const uchar *m_pixels = nullptr;
    quint32 m_width = 0;
    quint32 m_height = 0;
    quint32 m_bytesPerLine = 0;
};

Screen::Screen()
{
    const uchar *dump = nullptr;
    if (m_file.open(QIODevice::ReadOnly))
        dump = m_file.map(0, m_file.size());
    if (!dump)
        throw std::runtime_error("the picture of the display can not be read");
    // A window dump: numbers of four bytes, then the colours of twelve bytes each, then the pixels.
    const auto field = [dump](int place) { return qFromBigEndian<quint32>(dump + 4 * place); };
    m_width = field(4);
    m_height = field(5);
    m_bytesPerLine = field(12);
    m_pixels = dump + field(0) + field(19) * 12;
}

bool Screen::showsContent() const
{
    // Letters of a title have strokes of some pixels: looking at every other one is enough.
    constexpr quint32 columnStep = 2;
    constexpr quint32 rowStep = 3;
    constexpr uchar light = 0xc0;
    constexpr int enough = 40;

    int found = 0;
    for (quint32 y = 0; y < m_height / 4; y += rowStep) {
        const uchar *row = m_pixels + y * m_bytesPerLine;
        for (quint32 x = m_width * 2 / 3; x < m_width; x += columnStep)
            found += std::min({ row[4 * x], row[4 * x + 1], row[4 * x + 2] }) >= light ? 1 : 0;
    }
    return found >= enough;
}

/** From just before the process is made until its content is seen on the display. */
double firstFrameMs(const Screen &screen, const QString &program)
{
    constexpr unsigned long lookInterval = 500; // microseconds
    constexpr qint64 longest = 20'000; // milliseconds

    QElapsedTimer clock;
    const auto waitFor = [&](bool content) {
        clock.start();
        while (screen.showsContent() != content) {
            if (clock.hasExpired(longest))
                throw std::runtime_error("the display does not show what was expected");
            QThread::usleep(lookInterval);
        }
    };
    waitFor(false); // what ran before has left
    QElapsedTimer sinceStart;
    sinceStart.start();
    const MeasuredProcess process(program);
    waitFor(true);
    return static_cast<double>(sinceStart.nsecsElapsed()) / 1e6;
}

void benchFirstFrame(Table &table, int rounds)
{
    const Screen screen;
    Sample kiosk;
    Sample floor;
    for (int round = -1; round < rounds; ++round) {
        const double floorMs = firstFrameMs(screen, floorProgram);
        const double kioskMs = firstFrameMs(screen, kioskProgram);
        if (round < 0)
            continue; // fills the caches
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
 * One after the other: the picture that a program shares with the display counts for shared memory
 * only where the display shows it, and a window before it would make it private.
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
    for (int round = 0; round < rounds; ++round) {
        floor.values.append(dirtyMbAlone(floorProgram));
        kiosk.values.append(dirtyMbAlone(kioskProgram));
    }
    table.addRatio(QStringLiteral("startup: dirty memory after 20 s"), " MB", kiosk, floor, 1.05,
                   0.75);
}

/** Refreshes fall on full hours here, counted from midnight; none may fall into what is measured.
 */
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

void benchScheduleIdle(Table &table, std::chrono::seconds settling, std::chrono::seconds time)
{
    MeasuredProcess process(kioskProgram);
    sleepFor(settling);
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

void benchClockIdle(Table &table, std::chrono::seconds settling, std::chrono::seconds time,
                    int rounds)
{
    // Side by side, so that both see the same minutes change.
    MeasuredProcess floorProcess(floorProgram, { QStringLiteral("--clock") });
    MeasuredProcess kioskProcess(kioskProgram);
    sleepFor(settling);
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
    const auto settling = quick ? 5s : 20s;
    const auto idle = quick ? 15s : 60s;
    const int rounds = quick ? 3 : 21;
    const int slowRounds = quick ? 1 : 5;

    simulator::Simulator simulator;
    if (!simulator.start())
        throw std::runtime_error("the simulator does not start");
    QSettings settings; // the kiosk's own, in the folder that scripts/bench made
    settings.setValue(keys::eventDataUrlTemplate, simulator.scheduleUrlTemplate());
    settings.setValue(keys::plenarLocationId, 1);
    settings.setValue(keys::locationName, QStringLiteral("Kiosk 1"));
    settings.setValue(keys::refreshInterval, 3'600);
    settings.sync();
    qputenv("QT_LOGGING_RULES", "*.debug=false;qt.scenegraph.time.renderloop.debug=true");

    benchFirstFrame(table, rounds);
    benchMemory(table, slowRounds);
    waitForQuietTime(settling + idle);
    simulator.setSchedule(quietDocument(QDateTime::currentDateTime()));
    benchScheduleIdle(table, settling, idle);
    waitForQuietTime(settling + slowRounds * idle);
    settings.setValue(keys::defaultView, 0); // the clock
    settings.sync();
    benchClockIdle(table, settling, idle, slowRounds);
}
