// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/failure.h"

#include "base/exceptions.h"

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
    constexpr int serverErrors = 5; // 500 to 599
    return failure && status != 0 && status / 100 != serverErrors;
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
