// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benchmarks.h"
#include "config/keys.h"
#include "postserver.h"
#include "process.h"

#include <QDir>
#include <QSettings>
#include <QTemporaryDir>

#include <stdexcept>

namespace {

struct Drain
{
    Sample perSecond;
    Sample peakMb;
};

void fill(const QString &folder, int records)
{
    for (int i = 0; i < records; ++i) {
        QFile file(folder + QStringLiteral("/record%1").arg(i));
        const QByteArray record
            = R"(<?xml version="1.0" encoding="UTF-8"?><attendance>)"
              "<clientTime>2026-11-23T10:00:00</clientTime><locationId>1</locationId>"
              "<transponderId>"
            + QByteArray::number(100'000 + i) + "</transponderId></attendance>";
        if (!file.open(QIODevice::WriteOnly) || file.write(record) != record.size())
            throw std::runtime_error("the spool can not be filled");
    }
}

/** Runs the program to its end and appends its figures. Throws unless it posts all records. */
void run(Drain &drain, const PostServer &server, int records, const QStringList &arguments)
{
    const int before = server.count();
    const auto words
        = MeasuredProcess(QStringLiteral(LUMENBOARD_QUEUE), arguments).output().split(' ');
    if (words.size() != 2 || server.count() - before != records)
        throw std::runtime_error("not every record was posted once");
    drain.perSecond.values.append(records / words[0].toDouble());
    drain.peakMb.values.append(words[1].trimmed().toDouble());
}

class Benchmark
{
public:
    explicit Benchmark(PostServer::Acknowledges acknowledges);

    /** Drains @p records records per round, alternating with the floor. */
    void measure(int records, int rounds, Drain &kiosk, Drain &floor) const;

private:
    PostServer m_server;
    QTemporaryDir m_folder;
};

Benchmark::Benchmark(PostServer::Acknowledges acknowledges)
    : m_server(acknowledges)
{
    QSettings settings; // the kiosk's, in the folder that scripts/bench sets
    settings.clear();
    settings.setValue(keys::attendanceLogUrl, QString::fromLatin1(m_server.url()));
    settings.setValue(keys::attendanceSpoolDir, m_folder.path());
    settings.sync();
}

void Benchmark::measure(int records, int rounds, Drain &kiosk, Drain &floor) const
{
    for (int round = 0; round < rounds; ++round) {
        run(floor, m_server, records,
            { QString::fromLatin1(m_server.url()), QString::number(records) });
        fill(m_folder.path(), records);
        run(kiosk, m_server, records, {});
        if (!QDir(m_folder.path()).isEmpty())
            throw std::runtime_error("the spool is not empty in the end");
    }
}

void addRate(Table &table, const QString &what, const Drain &kiosk, const Drain &floor)
{
    table.addRateRatio(QStringLiteral("drain: ") + what, "/s", kiosk.perSecond, floor.perSecond,
                       0.8);
}

} // namespace

/**
 * The floor posts the same records from memory with Qt's own manager, the same number at a time.
 * With ordinary TCP acknowledgements both sides mostly wait: Qt sends head and body separately, and
 * the body waits for the acknowledgement of the head. Immediate acknowledgements show the actual
 * work.
 */
void benchDrain(Table &table, bool quick)
{
    const int few = 100;
    const int many = quick ? 300 : 1'000;
    const int max = quick ? 1'000 : 10'000;
    const int rounds = quick ? 1 : 5;

    const auto count = QStringLiteral("%1 records, %2");
    const auto name = [&count](int records, const char *how) {
        return count.arg(records).arg(QLatin1String(how));
    };
    {
        const Benchmark waiting(PostServer::Acknowledges::AsUsual);
        for (const int records : { many, max }) {
            Drain kiosk;
            Drain floor;
            waiting.measure(records, 1, kiosk, floor);
            addRate(table, name(records, "plain server"), kiosk, floor);
        }
    }
    const Benchmark working(PostServer::Acknowledges::AtOnce);
    Drain base;
    Drain ignored;
    working.measure(few, rounds, base, ignored);
    for (const int records : { many, max }) {
        Drain kiosk;
        Drain floor;
        working.measure(records, rounds, kiosk, floor);
        addRate(table, name(records, "server acknowledges at once"), kiosk, floor);
        table.add(QStringLiteral("drain: MB more than for %1 at the peak, %2 records")
                      .arg(few)
                      .arg(records),
                  kiosk.peakMb.text(" MB"), base.peakMb.text(" MB"),
                  kiosk.peakMb.median() - base.peakMb.median(), 5);
    }
}
