// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/exceptions.h"

/** An unreadable schedule: what() is for the log, shown() for the person at the screen. */
class ScheduleException : public Exception
{
public:
    ScheduleException(const QString &english, const QString &shown)
        : Exception(english)
        , m_shown(shown)
    {
    }

    /** The message in the language of the interface. */
    [[nodiscard]] const QString &shown() const { return m_shown; }

private:
    QString m_shown;
};
