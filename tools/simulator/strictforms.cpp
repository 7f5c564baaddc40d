// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/strictforms.h"

#include <QRegularExpression>

namespace simulator {

bool matches(const QString &text, const char *form)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(QString::fromLatin1(form)))
        .match(text)
        .hasMatch();
}

QDateTime isoDateTime(const QString &text)
{
    return matches(text, R"(\d{4}(-\d\d){2}T\d\d(:\d\d){2}(\.\d+)?(Z|[+-]\d\d:\d\d)?)")
        ? QDateTime::fromString(text, Qt::ISODate)
        : QDateTime();
}

} // namespace simulator
