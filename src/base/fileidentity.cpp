// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/fileidentity.h"

#include <QFile>

#include <sys/stat.h>

FileIdentity fileIdentity(const QString &path)
{
    struct stat info
    {
    };
    if (stat(QFile::encodeName(path).constData(), &info) != 0)
        return {};
    return { info.st_ino, info.st_mtim.tv_sec * 1000000000LL + info.st_mtim.tv_nsec };
}
