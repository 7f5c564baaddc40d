// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benchmarks.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

/** The value with about three digits. */
QString number(double value)
{
    if (value == Table::none)
        return QStringLiteral("-");
    const double size = std::abs(value);
    if (size >= 100 || value == std::round(value))
        return QString::number(value, 'f', 0);
    return QString::number(value, 'f', size >= 10 ? 1 : size >= 0.1 ? 2 : 3);
}

} // namespace

double Sample::median() const
{
    QVector<double> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    const int middle = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
}

double Sample::high() const
{
    QVector<double> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    return sorted[(sorted.size() * 19 + 19) / 20 - 1];
}

QString Sample::text(const char *unit) const
{
    const auto [min, max] = std::minmax_element(values.begin(), values.end());
    return QStringLiteral("%1%2 (%3..%4)")
        .arg(number(median()), QLatin1String(unit), number(*min), number(*max));
}

void Table::add(const QString &what, const QString &measured, const QString &floor, double figure,
                double limit, double aim)
{
    auto verdict = QStringLiteral("-");
    if (aim != none && figure <= aim)
        verdict = QStringLiteral("aim met");
    else if (limit != none)
        verdict = figure <= limit ? QStringLiteral("met") : QStringLiteral("NOT MET");
    m_lines.append({ what, measured, floor, number(figure), number(limit), number(aim), verdict });
}

void Table::addRatio(const QString &what, const char *unit, const Sample &measured,
                     const Sample &floor, double limit, double aim)
{
    add(what, measured.text(unit), floor.text(unit), measured.median() / floor.median(), limit,
        aim);
}

void Table::addHighRatio(const QString &what, const char *unit, const Sample &measured,
                         const Sample &floor, double limit, double aim)
{
    add(what + QStringLiteral(", p95"), number(measured.high()) + QLatin1String(unit),
        number(floor.high()) + QLatin1String(unit), measured.high() / floor.high(), limit, aim);
}

void Table::addRateRatio(const QString &what, const char *unit, const Sample &measured,
                         const Sample &floor, double min)
{
    const double ratio = measured.median() / floor.median();
    m_lines.append({ what, measured.text(unit), floor.text(unit), number(ratio),
                     QStringLiteral(">= ") + number(min), number(none),
                     ratio >= min ? QStringLiteral("met") : QStringLiteral("NOT MET") });
}

void Table::print() const
{
    const QVector<QStringList> lines = QVector<QStringList> {
        QStringLiteral("what,measured,floor,ratio,limit,aim,verdict").split(QLatin1Char(','))
    } + m_lines;
    QVector<int> widths(lines.first().size());
    for (const QStringList &line : lines) {
        for (int i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], line[i].size());
    }
    for (const QStringList &line : lines) {
        QString text;
        for (int i = 0; i < line.size(); ++i)
            text += line[i].leftJustified(widths[i] + 2);
        std::puts(text.trimmed().toUtf8().constData());
    }
}
