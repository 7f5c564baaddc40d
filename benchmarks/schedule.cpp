// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benchmarks.h"
#include "schedule/eventdata.h"

#include <QBuffer>
#include <QXmlStreamReader>

#include <algorithm>
#include <ctime>
#include <map>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {

/** Processor time of this thread in milliseconds, independent of other load. */
double cpuMs()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/** A device with the document, like a network reply. */
std::unique_ptr<QBuffer> opened(QByteArray *document)
{
    auto device = std::make_unique<QBuffer>(document);
    device->open(QIODevice::ReadOnly);
    return device;
}

double walkMs(QByteArray &document, int times)
{
    const double start = cpuMs();
    for (int i = 0; i < times; ++i) {
        const auto device = opened(&document);
        QXmlStreamReader reader(device.get());
        while (!reader.atEnd())
            reader.readNext();
        if (reader.hasError())
            throw std::runtime_error("the document is not well-formed");
    }
    return (cpuMs() - start) / times;
}

/** Time from bytes to linked, sorted objects, without deleting them. */
double readMs(QByteArray &document, int times, int events)
{
    std::vector<std::unique_ptr<EventData>> kept;
    kept.reserve(static_cast<size_t>(times));
    const double start = cpuMs();
    for (int i = 0; i < times; ++i)
        kept.push_back(EventData::fromDocument(opened(&document).get()));
    const double spent = (cpuMs() - start) / times;
    if (kept.back()->error() || kept.back()->objects().events.size() != events)
        throw std::runtime_error("the document was not read");
    return spent;
}

} // namespace

void benchSchedule(Table &table, bool quick)
{
    constexpr double limit = 1.6;
    constexpr double aim = 1.3;
    constexpr double maxGrowth = 1.1;
    constexpr int small = 1'000;
    constexpr int large = 100'000;
    constexpr int eventsPerSample = 5'000; // reads a small document several times

    for (const Times times : { Times::QuarterHours, Times::Distinct }) {
        const auto name = times == Times::Distinct ? QStringLiteral("schedule, distinct times")
                                                   : QStringLiteral("schedule");
        std::map<int, double> ratios;
        for (const int events : { 10, small, 10'000, large }) {
            QByteArray document = scheduleDocument(events, times);
            const int repeats = std::max(1, eventsPerSample / events);
            const int rounds = quick ? 3 : events == large ? 11 : 31;
            Sample read;
            Sample walk;
            for (int round = -1; round < rounds; ++round) {
                const double walked = walkMs(document, repeats);
                const double taken = readMs(document, repeats, events);
                if (round < 0)
                    continue; // warm-up
                walk.values.append(walked);
                read.values.append(taken);
            }
            ratios[events] = read.median() / walk.median();
            // The smallest document has no limit: it shows the fixed cost.
            table.addRatio(QStringLiteral("%1: %2 events, CPU").arg(name).arg(events), " ms", read,
                           walk, events == 10 ? Table::none : limit,
                           events == 10 ? Table::none : aim);
        }
        const auto at = [&](int events) { return QString::number(ratios[events], 'f', 2); };
        table.add(name + QStringLiteral(": ratio at 100000 to that at 1000"), at(large), at(small),
                  ratios[large] / ratios[small], maxGrowth);
    }
}
