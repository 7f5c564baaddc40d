// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/runtimefolder.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <unistd.h>

QString runtimeFolder()
{
    // A service may have several, separated by colons.
    QString folder = qEnvironmentVariable("RUNTIME_DIRECTORY").section(QLatin1Char(':'), 0, 0);
    // A kiosk that the service's user starts by hand must meet the service's lock.
    const QFileInfo ofService(QStringLiteral("/run/lumenboard-kiosk"));
    if (folder.isEmpty() && ofService.isDir() && ofService.ownerId() == geteuid())
        folder = ofService.filePath();
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation)
            + QLatin1String("/lumenboard");
    (void)QDir().mkpath(folder); // the umask keeps others out; a failure shows at the first file
    return folder;
}
