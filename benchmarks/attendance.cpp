// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benchmarks.h"
#include "config/keys.h"
#include "postserver.h"
#include "process.h"
#include "screen.h"
#include "simulator/simulator.h"
#include "simulator/virtualreader.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

using namespace std::chrono_literals;

namespace {

using Clock = PostServer::Clock;

constexpr int noticeMs = 300; // the same as in echo.cpp

void waitUntil(const std::function<bool()> &isReached, const char *error)
{
    constexpr auto timeout = 20s;
    constexpr unsigned long pollInterval = 250; // microseconds

    const auto end = Clock::now() + timeout;
    while (!isReached()) {
        if (Clock::now() > end)
            throw std::runtime_error(error);
        QThread::usleep(pollInterval);
    }
}

/** Observed delays of one side, in milliseconds since the card's bytes were sent. */
struct Delays
{
    Sample screen;
    Sample head;
    Sample body;
};

/** A program with its own reader, display and server. */
class Side
{
public:
    Side(simulator::SerialBus &bus, simulator::SerialBus::Device device, const char *display,
         const char *screen);

    [[nodiscard]] QString portName() const { return m_reader.portName(); }
    [[nodiscard]] QString url() const { return QString::fromLatin1(m_server.url()); }

    void start(const QString &program, const QStringList &arguments = {});
    void stop() { m_process.reset(); }
    /** True once the screen no longer shows the last tap. Call it repeatedly until then. */
    [[nodiscard]] bool isIdle();
    /** Taps a card and appends the delays. */
    void tap(Delays &delays);

private:
    PostServer m_server { PostServer::Acknowledges::AsUsual, noticeMs };
    simulator::VirtualReader m_reader;
    Screen m_screen;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    std::unique_ptr<MeasuredProcess> m_process;
    quint64 m_idlePicture = 0;
    quint64 m_lastPicture = 0;
    Clock::time_point m_lastChange;
};

Side::Side(simulator::SerialBus &bus, simulator::SerialBus::Device device, const char *display,
           const char *screen)
    : m_reader(bus, std::move(device))
    , m_screen(qEnvironmentVariable(screen))
{
    if (!m_reader.plug())
        throw std::runtime_error("the reader can not be plugged in");
    const auto variables = bus.environment();
    for (auto variable = variables.begin(); variable != variables.end(); ++variable)
        m_environment.insert(variable.key(), variable.value());
    m_environment.insert(QStringLiteral("DISPLAY"), qEnvironmentVariable(display));
}

void Side::start(const QString &program, const QStringList &arguments)
{
    constexpr unsigned long startMs = 4000; // by then the deferred work of a start is done

    m_process = std::make_unique<MeasuredProcess>(program, arguments, m_environment);
    try {
        waitUntil([this] { return m_process->log().contains("Serial port opened."); },
                  "a program does not open its reader; it has logged:\n");
    } catch (const std::runtime_error &e) {
        throw std::runtime_error(e.what() + m_process->log().toStdString());
    }
    QThread::msleep(startMs);
    m_idlePicture = m_screen.noticeSide();
}

bool Side::isIdle()
{
    constexpr auto pause = 150ms;
    constexpr auto longPause = 2s; // the page itself has changed

    const auto now = Clock::now();
    const quint64 picture = m_screen.noticeSide();
    if (picture != std::exchange(m_lastPicture, picture))
        m_lastChange = now;
    if (now - m_lastChange > longPause)
        m_idlePicture = picture;
    return picture == m_idlePicture && now - m_lastChange > pause;
}

void Side::tap(Delays &delays)
{
    const int posts = m_server.count();
    const auto start = Clock::now();
    const auto msSince = [start](Clock::time_point end) {
        return std::chrono::duration<double, std::milli>(end - start).count();
    };
    m_reader.tap("0A1B2C3D");
    waitUntil([this] { return m_screen.noticeSide() != m_idlePicture; },
              "a tap is not seen on the screen");
    delays.screen.values.append(msSince(Clock::now()));
    waitUntil([this, posts] { return m_server.count() != posts; }, "a tap is not posted");
    const PostServer::Arrival arrival = m_server.lastArrival();
    delays.head.values.append(msSince(arrival.head));
    delays.body.values.append(msSince(arrival.whole));
}

/** Delays of the first card after each start, and of the later ones. */
struct Result
{
    Delays first;
    Delays later;
};

void writeSettings(const Side &kiosk, const simulator::Simulator &simulator)
{
    QSettings settings; // the kiosk's, in the folder that scripts/bench sets
    settings.clear();
    settings.setValue(keys::eventDataUrlTemplate, simulator.scheduleUrlTemplate());
    settings.setValue(keys::plenarLocationId, 1);
    settings.setValue(keys::refreshInterval, 3'600);
    settings.setValue(keys::attendanceLogUrl, kiosk.url());
    settings.setValue(keys::tallyxMode, 0); // no second notice for the question
    settings.sync();
}

void tapInTurns(Side &kiosk, Side &floor, int taps, Result &kioskResult, Result &floorResult)
{
    constexpr int warmUps = 2; // after the first tap, which has its own lines

    const auto tap = [&kiosk, &floor](Side &side, Delays &delays) {
        // Wait for both sides: a visible notice costs processor time.
        waitUntil([&] { return kiosk.isIdle() && floor.isIdle(); },
                  "a notice does not leave the screen");
        side.tap(delays);
    };
    tap(kiosk, kioskResult.first);
    tap(floor, floorResult.first);
    Delays ignored;
    for (int i = -warmUps; i < taps; ++i) {
        tap(floor, i < 0 ? ignored : floorResult.later);
        tap(kiosk, i < 0 ? ignored : kioskResult.later);
    }
}

void addLines(Table &table, const Result &kiosk, const Result &floor)
{
    const auto add = [&table](const char *what, const Sample &measured, const Sample &bare,
                              double limit, double aim = Table::none) {
        const QString line = QStringLiteral("attendance: card to ") + QLatin1String(what);
        table.addRatio(line, " ms", measured, bare, limit, aim);
        table.addHighRatio(line, " ms", measured, bare, limit, aim);
    };
    add("first change on the screen", kiosk.later.screen, floor.later.screen, 1.5, 1.25);
    add("head of the POST", kiosk.later.head, floor.later.head, 1.25);
    add("body of the POST", kiosk.later.body, floor.later.body, 1.25);
    const auto addFirst = [&table](const char *what, const Sample &measured, const Sample &bare) {
        table.addRatio(QStringLiteral("attendance: first card after the start to ")
                           + QLatin1String(what),
                       " ms", measured, bare, Table::none);
    };
    addFirst("first change on the screen", kiosk.first.screen, floor.first.screen);
    addFirst("head of the POST", kiosk.first.head, floor.first.head);
}

} // namespace

/**
 * The floor does the minimum that a card requires: a thread that reads the same kind of line, a
 * file written as durably, a bare POST, one rectangle on a bare view. Both run side by side, each
 * on its own display, and are tapped alternately.
 */
void benchAttendance(Table &table, bool quick)
{
    const int starts = quick ? 2 : 10;
    const int taps = quick ? 15 : 20;

    simulator::SerialBus bus; // before any thread
    simulator::Simulator simulator;
    if (!simulator.start())
        throw std::runtime_error("the simulator does not start");
    simulator.setSchedule(quietDocument(QDateTime::currentDateTime()));
    Side kiosk(bus, {}, "DISPLAY", "LUMENBOARD_BENCH_SCREEN");
    simulator::SerialBus::Device plain; // not accepted by the kiosk
    plain.vendorId = 0;
    plain.description = QStringLiteral("Line");
    Side floor(bus, plain, "LUMENBOARD_BENCH_FLOOR_DISPLAY", "LUMENBOARD_BENCH_FLOOR_SCREEN");
    writeSettings(kiosk, simulator);
    const QTemporaryDir folder; // on the same disk as the kiosk's records

    Result kioskResult;
    Result floorResult;
    for (int start = 0; start < starts; ++start) {
        kiosk.start(QStringLiteral(LUMENBOARD_PROGRAM));
        floor.start(QStringLiteral(LUMENBOARD_ECHO),
                    { floor.portName(), folder.path(), floor.url() });
        tapInTurns(kiosk, floor, taps, kioskResult, floorResult);
        kiosk.stop();
        floor.stop();
    }
    addLines(table, kioskResult, floorResult);
}
