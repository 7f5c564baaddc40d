// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/lbapi.h"
#include "app/commandline.h"
#include "app/startup.h"
#include "app/terminationsignals.h"
#include "app/windowpass.h"
#include "app/workercontroller.h"
#include "base/loglimit.h"
#include "config/config.h"
#include "config/effectivesettings.h"
#include "config/secrets.h"
#include "net/addresswarnings.h"
#include "supervision/journal.h"

#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>

namespace {

/**
 * Ends the process without running the destructors of Qt's globals, which wait for hanging name
 * look-ups (12 s seen) and for servers that are still sending, and abort where a thread was left
 * behind. Nothing is lost: the window is gone, and every changed setting is already on disk.
 */
[[noreturn]] void leave(int code)
{
    flushLog();
    std::fflush(nullptr);
    std::_Exit(code);
}

} // namespace

int main(int argc, char *argv[])
{
    prepareJournal();
    installLogLimit();
    prepareEnvironment();
    if (const auto status = runCommandLine(argc, argv))
        leave(*status);

    QGuiApplication app(argc, argv);
    if (!acceptArguments(QCoreApplication::arguments()))
        return EXIT_FAILURE;
    nameApplication();
    const TerminationSignals termination;
    Config::instance();
    setGermanLocale();
    Translations translations;
    translations.install();
    loadFonts();
    registerMetaTypes();
    registerQmlTypes();
    LBAPI::instance();
    for (const auto warn : { warnOfSettings, warnOfAddresses, secrets::warn }) {
        warn();
        QObject::connect(Config::instance(), &Config::configChanged, warn);
    }

    int code = EXIT_FAILURE;
    try {
        const WorkerController workerController;
        code = runWindowPasses(termination);
    } catch (...) {
        throw; // without this handler the process could end before the stack is unwound
    }
    leave(code);
}
