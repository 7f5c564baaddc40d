// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/statuscommand.h"

#include "base/exceptions.h"
#include "status/statusformats.h"
#include "status/storedstatus.h"

#include <QHash>

#include <cstdio>
#include <cstdlib>

using Formatter = QByteArray (*)(const StoredStatus &, const QVector<Problem> &);

int runStatusCommand(const QString &folder, const QString &format)
{
    const QHash<QString, Formatter> formatters {
        { QStringLiteral("text"), &statusformats::text },
        { QStringLiteral("json"), &statusformats::json },
        { QStringLiteral("prometheus"), &statusformats::prometheus },
    };
    const Formatter formatter = formatters.value(format);
    if (!formatter) {
        std::fprintf(stderr, "There is no format '%s'. See --help.\n", qPrintable(format));
        return EXIT_FAILURE;
    }
    try {
        const auto status = StoredStatus::read(folder);
        const auto problems = findProblems(status);
        const QByteArray text = formatter(status, problems);
        if (std::fwrite(text.constData(), 1, size_t(text.size()), stdout) != size_t(text.size()))
            return EXIT_FAILURE;
        return exitStatusOf(healthOf(status, problems));
    } catch (const Exception &e) {
        std::fprintf(stderr, "%s\n", e.what());
        return EXIT_FAILURE;
    }
}
