// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/startup.h"
#include "benchmarks.h"

#include <QCoreApplication>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int argc, char *argv[])
{
    struct Benchmark
    {
        const char *name;
        void (*run)(Table &, bool);
    };
    constexpr std::array<Benchmark, 6> benchmarks { {
        { "schedule", benchSchedule },
        { "startup", benchStartup },
        { "refresh", benchRefresh },
        { "attendance", benchAttendance },
        { "question", benchQuestion },
        { "drain", benchDrain },
    } };

    // The same as in the program. The rest of the program's environment is not set, because the
    // floors inherit this environment and must run with Qt's defaults.
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
    const QCoreApplication application(argc, argv);
    nameApplication();
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const bool all = arguments.contains(QStringLiteral("all"));
    const bool quick = arguments.contains(QStringLiteral("--quick"));

    if (!qEnvironmentVariableIsSet("LUMENBOARD_BENCH_SCREEN")) {
        std::fputs("Use scripts/bench: this program writes settings and needs a display.\n",
                   stderr);
        return EXIT_FAILURE;
    }
    Table table;
    int status = EXIT_SUCCESS;
    for (const Benchmark &benchmark : benchmarks) {
        const QString name = QLatin1String(benchmark.name);
        if (!all && !arguments.contains(name))
            continue;
        std::fprintf(stderr, "Running %s ...\n", benchmark.name);
        try {
            benchmark.run(table, quick);
        } catch (const std::exception &e) {
            std::fprintf(stderr, "%s failed: %s\n", benchmark.name, e.what());
            status = EXIT_FAILURE;
        }
    }
    table.print();
    return status;
}
