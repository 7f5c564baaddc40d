// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/startup.h"
#include "config/config.h"
#include "support/testcase.h"

#include <QGuiApplication>
#include <QTemporaryDir>

/**
 * Runs all registered test classes in a private environment. The name of a class as first argument
 * selects it: "tst_net TestHttp endsEveryRequest:silent".
 */
int main(int argc, char *argv[])
{
    prepareEnvironment(); // first, so that the folders are private
    const QTemporaryDir home;
    for (const char *name : { "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_RUNTIME_DIR" })
        qputenv(name, QFile::encodeName(home.filePath(QString::fromLatin1(name))));
    qputenv("TZ", "Europe/Berlin");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qunsetenv("QT_IM_MODULE");

    const QGuiApplication app(argc, argv);
    nameApplication();
    setGermanLocale();
    registerMetaTypes();
    registerQmlTypes();
    delete Config::instance(); // created by the line before; tests start without it
    int failures = 0;
    const bool isSelected = argc > 1 && qstrncmp(argv[1], "Test", 4) == 0;
    for (const auto &make : qAsConst(registeredTests)) {
        const auto test = make();
        if (!isSelected || qstrcmp(test->metaObject()->className(), argv[1]) == 0)
            failures += QTest::qExec(test.get(), argc - isSelected, argv + isSelected);
    }
    return failures;
}
