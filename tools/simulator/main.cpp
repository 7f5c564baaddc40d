// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/commandinput.h"
#include "simulator/commandinterpreter.h"
#include "simulator/kioskrunner.h"
#include "simulator/simulator.h"
#include "simulator/terminationsignals.h"
#include "simulator/virtualreader.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>
#include <memory>
#include <optional>
#include <unistd.h>

using simulator::CommandInput;
using simulator::CommandInterpreter;
using simulator::KioskRunner;
using simulator::SerialBus;
using simulator::Simulator;
using simulator::TerminationSignals;
using simulator::VirtualReader;

namespace {

constexpr auto description = R"(
Plays the services around the kiosk and its card reader on this machine, and the kiosk with them.

Commands are read line by line from standard input ("help" lists them) and from POST requests to
/control. The end of standard input ends the simulator, but not when a kiosk runs and the input is
no terminal: then the kiosk decides. In the background use --no-stdin.)";

struct Options
{
    quint16 port = 0;
    QString schedule;
    QByteArray configuration;
    QStringList faults;
    bool readsInput = true;
    bool hasReader = true;
    QString program;
    QStringList arguments;
    QString home;
    QMap<QString, QString> settings;
};

void printLine(const QString &line)
{
    std::puts(line.toLocal8Bit().constData());
    std::fflush(stdout);
}

[[noreturn]] void fail(const QString &message)
{
    std::fputs(QStringLiteral("lumenboard-simulator: %1\n").arg(message).toLocal8Bit().constData(),
               stderr);
    std::exit(EXIT_FAILURE);
}

/// Splits "name=value" at the first equals sign.
QPair<QString, QString> pairOf(const QString &text)
{
    const int sign = text.indexOf(QLatin1Char('='));
    if (sign <= 0)
        fail(QStringLiteral("\"%1\" lacks a name or an equals sign").arg(text));
    return { text.left(sign), text.mid(sign + 1) };
}

Options parseOptions()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromLatin1(description).trimmed());
    parser.addHelpOption();
    parser.addVersionOption();
    const auto add = [&parser](const char *name, const char *text, const char *value = "") {
        QCommandLineOption option(QString::fromLatin1(name), QString::fromLatin1(text),
                                  QString::fromLatin1(value));
        parser.addOption(option);
        return option;
    };
    const auto port = add("port", "Serve on this port of 127.0.0.1; by default a free one.", "N");
    const auto schedule = add("schedule", "Serve this file for every day.", "FILE");
    const auto configuration = add("configuration", "Begin with this configuration.", "JSON");
    const auto fault = add("fault", "Begin with this fault; repeatable.", "ROUTE=KIND");
    const auto noInput = add("no-stdin", "Read no commands from standard input.");
    const auto run = add("run", "Start the kiosk and end with it and its status.", "PROGRAM");
    const auto noReader = add("no-reader", "Start the kiosk without a made-up card reader.");
    const auto home
        = add("home", "Keep the kiosk's files here; by default in a temporary folder.", "DIR");
    const auto set = add("set", "Write this setting for the kiosk; repeatable.", "KEY=VALUE");
    parser.addPositionalArgument(QStringLiteral("args"),
                                 QStringLiteral("Arguments for the kiosk, after --."),
                                 QStringLiteral("[-- args...]"));
    parser.process(*QCoreApplication::instance());

    Options options;
    bool numeric = true;
    if (parser.isSet(port))
        options.port = parser.value(port).toUShort(&numeric);
    if (!numeric)
        fail(QStringLiteral("\"%1\" is no port").arg(parser.value(port)));
    options.schedule = parser.value(schedule);
    options.configuration = parser.value(configuration).toUtf8();
    options.faults = parser.values(fault);
    options.readsInput = !parser.isSet(noInput);
    options.hasReader = !parser.isSet(noReader);
    options.program = parser.value(run);
    options.arguments = parser.positionalArguments();
    if (options.program.isEmpty() && !options.arguments.isEmpty())
        fail(QStringLiteral("arguments for a kiosk, but no --run"));
    options.home = parser.value(home);
    const QStringList settings = parser.values(set);
    for (const QString &each : settings) {
        const auto [key, value] = pairOf(each);
        options.settings.insert(key, value);
    }
    return options;
}

void startSimulator(Simulator &simulator, CommandInterpreter &interpreter, const Options &options)
{
    QString error;
    if (!options.schedule.isEmpty() && !simulator.setScheduleFile(options.schedule, &error))
        fail(error);
    simulator.setConfiguration(options.configuration);
    for (const QString &each : options.faults) {
        const auto [route, fault] = pairOf(each);
        const QString answer = interpreter.setFault(route, fault);
        if (answer.startsWith(QLatin1String("error")))
            fail(answer);
    }
    simulator.setCommandHandler(
        [&interpreter](const QString &command) { return interpreter.execute(command); });
    if (!simulator.start(options.port))
        fail(simulator.errorString());
    printLine(QStringLiteral("Simulator ready at %1").arg(simulator.baseUrl().toString()));
}

/** The made-up reader and what it is plugged into. */
struct ReaderSetup
{
    SerialBus bus;
    VirtualReader reader { bus };
};

/// The reader that the kiosk will find, none if it can not be made.
std::unique_ptr<ReaderSetup> plugReader(KioskRunner &kiosk, CommandInterpreter &interpreter)
{
    if (SerialBus::preloadLibrary().isEmpty()) {
        printLine(
            QStringLiteral("No card reader: the library that shows it to the kiosk is missing,"
                           " install umockdev"));
        return nullptr;
    }
    auto setup = std::make_unique<ReaderSetup>();
    if (!setup->reader.plug()) {
        printLine(QStringLiteral("No card reader: ") + setup->reader.errorString());
        return nullptr;
    }
    kiosk.setVariables(setup->bus.environment());
    interpreter.setReader(&setup->reader);
    printLine(QStringLiteral("Card reader at %1").arg(setup->reader.portName()));
    return setup;
}

void startKiosk(KioskRunner &kiosk, const Simulator &simulator, const Options &options)
{
    auto settings = simulator.kioskSettings();
    for (auto each = options.settings.begin(); each != options.settings.end(); ++each)
        settings.insert(each.key(), each.value());
    if (!kiosk.prepare(settings))
        fail(kiosk.errorString());
    QObject::connect(&kiosk, &KioskRunner::finished, &kiosk, [&kiosk](int status) {
        if (!kiosk.errorString().isEmpty())
            printLine(kiosk.errorString());
        printLine(QStringLiteral("kiosk exited with status %1").arg(status));
        QCoreApplication::exit(status);
    });
    // From the event loop, which a failure to start has to end.
    QMetaObject::invokeMethod(
        &kiosk, [&kiosk, options] { kiosk.start(options.program, options.arguments); },
        Qt::QueuedConnection);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumenboard-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(SIMULATOR_VERSION));
    const Options options = parseOptions();

    std::unique_ptr<ReaderSetup> reader; // outlives the kiosk, which looks at its files
    Simulator simulator;
    CommandInterpreter interpreter(&simulator);
    KioskRunner kiosk(options.home);
    const auto end = [&kiosk] {
        if (kiosk.isRunning())
            kiosk.stop();
        else
            QCoreApplication::quit();
    };
    const TerminationSignals signals_;
    QObject::connect(&signals_, &TerminationSignals::received, &kiosk, end);
    QObject::connect(&interpreter, &CommandInterpreter::quitRequested, &kiosk, end,
                     Qt::QueuedConnection);
    QObject::connect(&simulator, &Simulator::requestServed, &simulator, printLine);

    startSimulator(simulator, interpreter, options);
    if (!options.program.isEmpty()) {
        startKiosk(kiosk, simulator, options);
        // After all that can fail, which would leave its files behind, and before the event loop.
        if (options.hasReader)
            reader = plugReader(kiosk, interpreter);
    }

    std::optional<CommandInput> input;
    if (options.readsInput) {
        input.emplace();
        QObject::connect(
            &*input, &CommandInput::lineRead, &interpreter,
            [&interpreter](const QString &line) { printLine(interpreter.execute(line)); });
        if (options.program.isEmpty() || ::isatty(STDIN_FILENO) != 0)
            QObject::connect(&*input, &CommandInput::ended, &kiosk, end, Qt::QueuedConnection);
    }
    return QCoreApplication::exec();
}
