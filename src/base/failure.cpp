// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/failure.h"

#include "base/exceptions.h"

Failure Failure::temporary(const QString &text)
{
    return { text, AttendanceWarningException::notificationType };
}

bool Failure::isTemporary() const
{
    return type == AttendanceWarningException::notificationType;
}

QString Failure::logText() const
{
    return text.isEmpty() ? QStringLiteral("unknown exception") : text;
}

Failure currentFailure()
{
    try {
        throw;
    } catch (const AttendanceException &e) {
        return { QString::fromUtf8(e.what()), e.type() };
    } catch (const std::exception &e) {
        return { QString::fromUtf8(e.what()), AttendanceErrorException::notificationType };
    } catch (...) {
        return { {}, AttendanceErrorException::notificationType };
    }
}
