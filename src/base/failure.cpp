// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/failure.h"

#include "base/exceptions.h"

#include <algorithm>
#include <array>

Failure Failure::temporary(const QString &text, const QString &shown)
{
    return { text, shown, AttendanceWarningException::notificationType };
}

bool Failure::isTemporary() const
{
    return type == AttendanceWarningException::notificationType;
}

QString Failure::logText() const
{
    return text.isEmpty() ? QStringLiteral("unknown exception") : text;
}

QString Failure::below(const QString &advice) const
{
    return advice + QLatin1String("\n\n") + (shown.isEmpty() ? tr("Unknown error") : shown);
}

bool RecordOutcome::isRefusal() const
{
    // A token that has expired, a portal or a busy service say nothing of the record.
    constexpr std::array notOfTheRecord { 401, 403, 407, 408, 429 };
    return failure && (status / 100 == 2 || status / 100 == 4)
        && std::find(notOfTheRecord.begin(), notOfTheRecord.end(), status) == notOfTheRecord.end();
}

QString RecordOutcome::shortReason() const
{
    if (!networkReason.isEmpty() || !failure)
        return networkReason;
    return failure->logText();
}

Failure currentFailure()
{
    try {
        throw;
    } catch (const AttendanceException &e) {
        return { QString::fromUtf8(e.what()), e.shown(), e.type() };
    } catch (const std::exception &e) {
        return { QString::fromUtf8(e.what()), {}, AttendanceErrorException::notificationType };
    } catch (...) {
        return { {}, {}, AttendanceErrorException::notificationType };
    }
}
