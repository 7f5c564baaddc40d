// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTextStream>

/** The output of the self-check: one line for each thing that was looked at, for an operator. */
class CheckReport
{
public:
    enum class Verdict { Good, Notice, Bad };

    CheckReport();

    /** Prints a finding; @p result tells how it was with @p what. */
    void add(Verdict verdict, const QString &what, const QString &result);
    /** Prints a line that judges nothing. */
    void print(const QString &line);

    /** Whether a finding was Bad. */
    [[nodiscard]] bool hasFailed() const { return m_failed; }

private:
    QTextStream m_out;
    bool m_failed = false;
};
