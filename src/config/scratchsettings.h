// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/**
 * Replaces the user's settings by a copy for this process, so that trying a configuration leaves
 * the screen's own files unchanged. The copy is in a folder that only its owner can enter and that
 * is removed with this object.
 *
 * Create it before the first access to Config.
 */
class ScratchSettings
{
public:
    ScratchSettings();

    /** The user's own file; it need not exist. */
    [[nodiscard]] QString fileName() const { return m_fileName; }
    /** The existing files that supply missing values; the first wins. */
    [[nodiscard]] QStringList fallbackFiles() const { return m_fallbackFiles; }
    /** What keeps the kiosk from reading or writing its settings; empty if nothing does. */
    [[nodiscard]] QString problem() const { return m_problem; }

private:
    void copy(const QString &original, const QString &place);

    QTemporaryDir m_folder;
    QString m_fileName;
    QStringList m_fallbackFiles;
    QString m_problem;
};
