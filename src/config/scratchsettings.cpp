// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/scratchsettings.h"

#include "config/config.h"
#include "config/keys.h"

#include <QDebug>
#include <QSettings>

ScratchSettings::ScratchSettings()
{
    if (!isValid()) {
        qWarning() << "Failed to copy the settings:" << m_folder.errorString();
        return;
    }
    const Config *original = Config::instance();
    QSettings from(original->fileName(), QSettings::IniFormat);
    from.setIniCodec("UTF-8");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
    delete original;

    QSettings to;
    to.setIniCodec("UTF-8");
    const QStringList all = from.allKeys();
    for (const QString &key : all) {
        if (key != keys::keycloakClientSecret)
            to.setValue(key, from.value(key));
    }
}
