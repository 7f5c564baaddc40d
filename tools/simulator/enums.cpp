// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/enums.h"

namespace simulator {

QString hyphenated(const char *enumerator)
{
    QString word;
    for (; *enumerator != '\0'; ++enumerator) {
        const QChar letter = QLatin1Char(*enumerator);
        if (letter.isUpper() && !word.isEmpty())
            word += QLatin1Char('-');
        word += letter.toLower();
    }
    return word;
}

} // namespace simulator
