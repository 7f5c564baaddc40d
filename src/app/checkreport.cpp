// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/checkreport.h"

#include "config/effectivesettings.h"
#include "net/errortext.h"

#include <cstdio>

CheckReport::CheckReport()
    : m_out(stdout)
{
    m_out.setCodec("UTF-8");
}

void CheckReport::add(Verdict verdict, const QString &what, const QString &result)
{
    const char *word = verdict == Verdict::Good ? "ok    "
        : verdict == Verdict::Notice            ? "note  "
                                                : "FAILED";
    m_failed |= verdict == Verdict::Bad;
    print(QStringLiteral("%1  %2: %3").arg(QLatin1String(word), what, result));
}

void CheckReport::addProblem(const EffectiveSetting &setting)
{
    if (!setting.problem.isEmpty())
        add(Verdict::Notice, QStringLiteral("setting ") + setting.key, setting.problem);
}

void CheckReport::print(const QString &line)
{
    constexpr int maxLength = 300;
    // Parts of the line come from outside, and a terminal obeys control characters.
    m_out << printableLine(maskPasswords(line), maxLength) << '\n';
    m_out.flush();
}
