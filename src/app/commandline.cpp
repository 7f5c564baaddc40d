// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/commandline.h"

#include "app/selfcheck.h"
#include "app/startup.h"
#include "app/terminationsignals.h"
#include "buildconfig.h"
#include "status/spoolcommand.h"
#include "status/statuscommand.h"
#include "status/storedstatus.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>

namespace {

const QString checkOption = QStringLiteral("check");
const QString statusOption = QStringLiteral("status");
const QString formatOption = QStringLiteral("format");
const QString spoolOption = QStringLiteral("spool");

/** Options that Qt removes from the arguments when a QGuiApplication is created. */
const QStringList qtOptions {
    QStringLiteral("display"),
    QStringLiteral("fontengine"),
    QStringLiteral("geometry"),
    QStringLiteral("platform"),
    QStringLiteral("platformpluginpath"),
    QStringLiteral("platformtheme"),
    QStringLiteral("plugin"),
    QStringLiteral("qmljsdebugger"),
    QStringLiteral("qwindowgeometry"),
    QStringLiteral("qwindowicon"),
    QStringLiteral("qwindowtitle"),
    QStringLiteral("reverse"),
    QStringLiteral("session"),
    QStringLiteral("style"),
};

void describeOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QStringLiteral("Room screen: shows a room's schedule full screen. Ctrl+Q ends it, F11 "
                       "leaves full screen."));
    // Qt's own options start with one dash: "-reverse" must not be read as "-r -e -v ...".
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(
        { checkOption,
          QStringLiteral("Print the effective settings, try TLS and each service, and "
                         "exit with 1 if something would keep the screen from working. "
                         "Needs no display and makes no record.") });
    parser.addOption(
        { statusOption,
          QStringLiteral("Tell how the running kiosk does; exit with 0 if it is healthy, 2 "
                         "if degraded, 3 if failing, 4 if it does not run.") });
    parser.addOption({ formatOption,
                       QStringLiteral("Of --status: text (default), json or prometheus."),
                       QStringLiteral("format"), QStringLiteral("text") });
    parser.addOption(
        { spoolOption,
          QStringLiteral("List the records that wait to be sent (list), print one (show NAME) or "
                         "copy all into a new file (export FILE). Changes none.") });
}

/** False, with a message, if neither we nor Qt know one of the options. */
bool knowsOptions(const QStringList &unknown)
{
    for (const QString &name : unknown) {
        if (qtOptions.contains(name))
            continue;
        std::fprintf(stderr, "Unknown option '%s'. See --help.\n", qPrintable(name));
        return false;
    }
    return true;
}

bool isAnySet(const QCommandLineParser &parser, const QStringList &options)
{
    return std::any_of(options.begin(), options.end(),
                       [&parser](const QString &option) { return parser.isSet(option); });
}

int runSelfCheck()
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false")); // the report is enough
    setGermanLocale(); // the services get the same requests as from the kiosk
    const TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::requested, qApp,
                     [] { QCoreApplication::exit(EXIT_FAILURE); });
    SelfCheck check;
    QObject::connect(&check, &SelfCheck::finished, qApp, &QCoreApplication::exit,
                     Qt::QueuedConnection);
    check.start();
    return QCoreApplication::exec();
}

} // namespace

std::optional<int> runCommandLine(int &argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    QCommandLineParser parser;
    describeOptions(parser);
    parser.parse(arguments); // the result says nothing: it is false for Qt's own options

    const QStringList unknown = parser.unknownOptionNames();
    if (!knowsOptions(unknown))
        return EXIT_FAILURE;
    const bool help
        = parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all"));
    const bool version = parser.isSet(QStringLiteral("version"));
    if (!help && !version && !isAnySet(parser, { checkOption, statusOption, spoolOption }))
        return {};

    // Never deleted: its destructor would wait for name look-ups that hang.
    new QCoreApplication(argc, argv);
    nameApplication();
    if (help) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return EXIT_SUCCESS;
    }
    if (version) {
        std::printf("Lumenboard %s\n", buildconfig::version);
        return EXIT_SUCCESS;
    }
    if (unknown.isEmpty() && !acceptArguments(arguments))
        return EXIT_FAILURE;
    if (parser.isSet(checkOption))
        return runSelfCheck();
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const QString folder = StoredStatus::defaultFolder();
    return parser.isSet(statusOption) ? runStatusCommand(folder, parser.value(formatOption))
                                      : runSpoolCommand(folder, parser.positionalArguments());
}

bool acceptArguments(const QStringList &arguments)
{
    QCommandLineParser parser;
    describeOptions(parser);
    const bool understood = parser.parse(arguments)
        && (parser.positionalArguments().isEmpty() || parser.isSet(spoolOption));
    if (!understood) {
        const QString problem = parser.errorText().isEmpty()
            ? QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments().value(0))
            : parser.errorText();
        std::fprintf(stderr, "%s See --help.\n", qPrintable(problem));
    }
    return understood;
}
