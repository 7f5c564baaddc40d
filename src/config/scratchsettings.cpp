// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/scratchsettings.h"

#include "config/settingsfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace {

bool canBeReplaced(const QFileInfo &file)
{
    QFileInfo nearest(file.path());
    while (!nearest.exists() && !nearest.isRoot())
        nearest.setFile(nearest.path());
    return nearest.isDir() && nearest.isWritable() && (!file.exists() || file.isWritable());
}

} // namespace

ScratchSettings::ScratchSettings()
{
    const QString application = QCoreApplication::applicationName();
    m_fileName = settingsFileName(QSettings::UserScope, application);
    const QString shared = settingsFileName(QSettings::UserScope);
    m_fallbackFiles = fallbackSettingsFiles();
    if (!m_folder.isValid()) {
        m_problem = QStringLiteral("can not be looked at: ") + m_folder.errorString();
        return;
    }
    if (!canBeReplaced(QFileInfo(m_fileName)))
        m_problem = QStringLiteral("can not be written to");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
    copy(m_fileName, settingsFileName(QSettings::UserScope, application));
    copy(shared, settingsFileName(QSettings::UserScope));
    if (QSettings().status() != QSettings::NoError)
        m_problem = QStringLiteral("is no settings file, or one behind it is none");
}

void ScratchSettings::copy(const QString &original, const QString &place)
{
    if (!QFile::exists(original))
        return;
    QDir().mkpath(QFileInfo(place).path());
    QFile file(original);
    if (file.copy(place))
        QFile::setPermissions(place, QFile::ReadOwner | QFile::WriteOwner);
    else
        m_problem = QStringLiteral("can not be read: ") + file.errorString();
}
