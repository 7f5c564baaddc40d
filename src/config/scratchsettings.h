// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/**
 * Puts a copy in the place of the user's settings, so that they can be looked at, and a
 * configuration tried out, while the screen's own files stay as they are. The copy lies in a folder
 * that only its owner can enter, and goes with this object.
 *
 * To be made before the first access to Config.
 */
class ScratchSettings
{
public:
    ScratchSettings();

    /** The user's own file; it need not exist. */
    [[nodiscard]] QString fileName() const { return m_fileName; }
    /** The files behind it that exist, the first counting most. */
    [[nodiscard]] QStringList filesBehind() const { return m_filesBehind; }
    /** What would keep the kiosk from reading its settings or keeping changes; empty if nothing. */
    [[nodiscard]] QString problem() const { return m_problem; }

private:
    void copy(const QString &original, const QString &place);

    QTemporaryDir m_folder;
    QString m_fileName;
    QStringList m_filesBehind;
    QString m_problem;
};
