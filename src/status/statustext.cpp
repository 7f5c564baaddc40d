// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/statustext.h"

#include <array>

using namespace std::chrono_literals;

namespace {

struct Unit
{
    std::chrono::seconds length;
    const char *name;
};

constexpr std::array units { Unit { 24h, "d" }, Unit { 1h, "h" }, Unit { 1min, "min" },
                             Unit { 1s, "s" } };

} // namespace

QString duration(std::chrono::seconds time)
{
    for (size_t i = 0; i < units.size(); ++i) {
        const auto whole = time / units.at(i).length;
        if (whole <= 0)
            continue;
        const QString text
            = QStringLiteral("%1 %2").arg(whole).arg(QLatin1String(units.at(i).name));
        const bool isExact = i + 2 >= units.size(); // nobody reads "3 min 7 s"
        const auto rest = isExact ? 0 : (time % units.at(i).length) / units.at(i + 1).length;
        return rest == 0
            ? text
            : QStringLiteral("%1 %2 %3")
                  .arg(text, QString::number(rest), QLatin1String(units.at(i + 1).name));
    }
    return time < 0s ? QLatin1Char('-') + duration(-time) : QStringLiteral("0 s");
}

QString count(int number, const char *noun)
{
    return QStringLiteral("%1 %2%3").arg(number).arg(QLatin1String(noun),
                                                     number == 1 ? QString() : QStringLiteral("s"));
}
