// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTemporaryDir>

/**
 * Puts a copy in the place of this process's settings, so that a configuration can be tried out
 * while the screen's own file stays as it is. The copy lacks the client's secret, lies in a folder
 * that only its owner can enter, and goes with this object.
 *
 * GUI thread; Config::instance() is another object afterwards.
 */
class ScratchSettings
{
public:
    ScratchSettings();

    /** Whether the copy is in place; if not, nothing has changed, and it was logged. */
    [[nodiscard]] bool isValid() const { return m_folder.isValid(); }

private:
    QTemporaryDir m_folder;
};
