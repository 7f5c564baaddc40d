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

constexpr int noticeMs = 300; // as long as the floor shows its rectangle

void waitUntil(const std::function<bool()> &isReached, const char *missed)
{
    constexpr auto longest = 20s;
    constexpr unsigned long lookInterval = 250; // microseconds

    const auto end = Clock::now() + longest;
    while (!isReached()) {
        if (Clock::now() > end)
            throw std::runtime_error(missed);
        QThread::usleep(lookInterval);
    }
}

/** What a side was seen to do, each in milliseconds since the card's bytes were sent. */
struct Delays
{
    Sample screen;
    Sample head;
    Sample body;
};

/** A program with a reader, a display and a server of its own. */
class Side
{
public:
    Side(simulator::SerialBus &bus, simulator::SerialBus::Device device, const char *display,
         const char *screen);

    [[nodiscard]] QString portName() const { return m_reader.portName(); }
    [[nodiscard]] QString url() const { return QString::fromLatin1(m_server.url()); }

    void start(const QString &program, const QStringList &arguments = {});
    void stop() { m_process.reset(); }
    /** Whether nothing is left to be seen of the tap before; asked again and again. */
    [[nodiscard]] bool rests();
    /** Taps, and adds what happens. */
    void tap(Delays &delays);

private:
    PostServer m_server { PostServer::Acknowledges::AsUsual, noticeMs };
    simulator::VirtualReader m_reader;
    Screen m_screen;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    std::unique_ptr<MeasuredProcess> m_process;
    quint64 m_restingPicture = 0;
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
    constexpr unsigned long settlingMs = 4000; // what a start puts off is done by then

    m_process = std::make_unique<MeasuredProcess>(program, arguments, m_environment);
    try {
        waitUntil([this] { return m_process->log().contains("Serial port opened."); },
                  "a program does not open its reader; it has logged:\n");
    } catch (const std::runtime_error &e) {
        throw std::runtime_error(e.what() + m_process->log().toStdString());
    }
    QThread::msleep(settlingMs);
    m_restingPicture = m_screen.noticeSide();
}

bool Side::rests()
{
    constexpr auto pause = 150ms;
    constexpr auto longPause = 2s; // the page itself has changed

    const auto now = Clock::now();
    const quint64 picture = m_screen.noticeSide();
    if (picture != std::exchange(m_lastPicture, picture))
        m_lastChange = now;
    if (now - m_lastChange > longPause)
        m_restingPicture = picture;
    return picture == m_restingPicture && now - m_lastChange > pause;
}

void Side::tap(Delays &delays)
{
    const int posts = m_server.count();
    const auto start = Clock::now();
    const auto msSince = [start](Clock::time_point end) {
        return std::chrono::duration<double, std::milli>(end - start).count();
    };
    m_reader.tap("0A1B2C3D");
    waitUntil([this] { return m_screen.noticeSide() != m_restingPicture; },
              "a tap is not seen on the screen");
    delays.screen.values.append(msSince(Clock::now()));
    waitUntil([this, posts] { return m_server.count() != posts; }, "a tap is not posted");
    const PostServer::Arrival arrival = m_server.lastArrival();
    delays.head.values.append(msSince(arrival.head));
    delays.body.values.append(msSince(arrival.whole));
}

} // namespace

/**
 * The floor does with a card what has to be done, with as little as Qt can do it with: a thread
 * that reads the same kind of line, a file written as durably, a bare POST, one rectangle on a bare
 * view. Both run side by side, each on a display of its own, and are tapped in turns.
 */
void benchAttendance(Table &table, bool quick)
{
    const int starts = quick ? 2 : 10;
    const int taps = quick ? 15 : 20;
    constexpr int warmUps = 2; // behind the first tap, which is told for itself

    simulator::SerialBus bus; // before there are threads
    simulator::Simulator simulator;
    if (!simulator.start())
        throw std::runtime_error("the simulator does not start");
    simulator.setSchedule(quietDocument(QDateTime::currentDateTime()));
    Side kiosk(bus, {}, "DISPLAY", "LUMENBOARD_BENCH_SCREEN");
    simulator::SerialBus::Device plain; // none that the kiosk would take
    plain.vendorId = 0;
    plain.description = QStringLiteral("Line");
    Side floor(bus, plain, "LUMENBOARD_BENCH_FLOOR_DISPLAY", "LUMENBOARD_BENCH_FLOOR_SCREEN");

    QSettings settings; // the kiosk's own, in the folder that scripts/bench made
    settings.clear();
    settings.setValue(keys::eventDataUrlTemplate, simulator.scheduleUrlTemplate());
    settings.setValue(keys::plenarLocationId, 1);
    settings.setValue(keys::refreshInterval, 3'600);
    settings.setValue(keys::attendanceLogUrl, kiosk.url());
    settings.setValue(keys::tallyxMode, 0); // a question beside the answer would cost a tap twice
    settings.sync();
    const QTemporaryDir folder; // on the disk that the kiosk's records are on

    Delays kioskFirst;
    Delays floorFirst;
    Delays kioskDelays;
    Delays floorDelays;
    for (int start = 0; start < starts; ++start) {
        kiosk.start(QStringLiteral(LUMENBOARD_PROGRAM));
        floor.start(QStringLiteral(LUMENBOARD_ECHO),
                    { floor.portName(), folder.path(), floor.url() });
        const auto tap = [&kiosk, &floor](Side &side, Delays &delays) {
            // Neither disturbs the other: a notice costs work as long as it is shown.
            waitUntil([&] { return kiosk.rests() && floor.rests(); },
                      "a notice does not leave the screen");
            side.tap(delays);
        };
        tap(kiosk, kioskFirst);
        tap(floor, floorFirst);
        Delays ignored;
        for (int i = -warmUps; i < taps; ++i) {
            tap(floor, i < 0 ? ignored : floorDelays);
            tap(kiosk, i < 0 ? ignored : kioskDelays);
        }
        kiosk.stop();
        floor.stop();
    }

    const auto line = [&table](const QString &what, const Sample &measured, const Sample &bare,
                               double limit, double aim = Table::none) {
        table.addRatio(QStringLiteral("attendance: card to ") + what, " ms", measured, bare, limit,
                       aim);
        table.addHighRatio(QStringLiteral("attendance: card to ") + what, " ms", measured, bare,
                           limit, aim);
    };
    line(QStringLiteral("first change on the screen"), kioskDelays.screen, floorDelays.screen, 1.5,
         1.25);
    line(QStringLiteral("head of the POST"), kioskDelays.head, floorDelays.head, 1.25);
    line(QStringLiteral("body of the POST"), kioskDelays.body, floorDelays.body, 1.25);
    const auto first = [&table](const char *what, const Sample &measured, const Sample &bare) {
        table.addRatio(QStringLiteral("attendance: first card after the start to ")
                           + QLatin1String(what),
                       " ms", measured, bare, Table::none);
    };
    first("first change on the screen", kioskFirst.screen, floorFirst.screen);
    first("head of the POST", kioskFirst.head, floorFirst.head);
}
