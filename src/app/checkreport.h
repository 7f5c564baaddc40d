// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTextStream>

struct EffectiveSetting;

/** The output of the self-check for an operator, one line per finding. */
class CheckReport
{
public:
    enum class Verdict { Good, Notice, Bad };

    CheckReport();

    /** Prints a finding: what was checked, and its @p result. */
    void add(Verdict verdict, const QString &what, const QString &result);
    /** Prints a finding if the stored value of @p setting is not used. */
    void addProblem(const EffectiveSetting &setting);
    /** Prints a line without a verdict. */
    void print(const QString &line);

    /** True if a finding was Bad. */
    [[nodiscard]] bool hasFailed() const { return m_failed; }

private:
    QTextStream m_out;
    bool m_failed = false;
};
