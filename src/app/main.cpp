// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/lbapi.h"
#include "app/commandline.h"
#include "app/startup.h"
#include "app/terminationsignals.h"
#include "app/windowpass.h"
#include "app/workercontroller.h"
#include "config/config.h"
#include "net/plainhttp.h"

#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>

namespace {

/**
 * Leaves without the destructors of Qt's globals: they wait for name look-ups that hang, and with
 * them the whole process would (12 s have been seen), as does a network manager whose server is
 * amid an answer. Window and threads are gone by now, and settings are written when they change.
 */
[[noreturn]] void leave(int code)
{
    std::fflush(nullptr);
    std::_Exit(code);
}

} // namespace

int main(int argc, char *argv[])
{
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
    warnOfPlainHttp();
    QObject::connect(Config::instance(), &Config::configChanged, &warnOfPlainHttp);

    int code = EXIT_FAILURE;
    try {
        const WorkerController workerController;
        code = runWindowPasses(termination);
    } catch (...) {
        throw; // caught so that the window is unwound in order before the process ends
    }
    leave(code);
}
