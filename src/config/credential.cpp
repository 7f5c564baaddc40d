// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/credential.h"

#include <QDebug>
#include <QFile>

std::optional<QString> credential(const QString &key)
{
    constexpr qint64 maxBytes = 4096;

    const QString folder = qEnvironmentVariable("CREDENTIALS_DIRECTORY");
    if (folder.isEmpty())
        return {};
    QFile file(folder + QLatin1Char('/') + key.section(QLatin1Char('/'), -1));
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "Failed to read the credential" << file.fileName() << file.errorString();
        return {};
    }
    const QString text = QString::fromUtf8(file.read(maxBytes)).trimmed();
    return text.isEmpty() ? std::nullopt : std::optional(text);
}
