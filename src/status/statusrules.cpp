// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/statusrules.h"

#include "status/statustext.h"
#include "status/storedstatus.h"

#include <algorithm>
#include <array>

using namespace std::chrono_literals;

namespace {

using Seconds = std::chrono::seconds;

struct Rule
{
    const char *name;
    Health level;
    QString (*find)(const StoredStatus &status);
};

/** Time since @p path, or since the start if it never happened. */
Seconds silence(const StoredStatus &status, const QString &path)
{
    const auto age = status.age(path);
    return age ? *age : status.age(QStringLiteral("started")).value_or(0s);
}

/** A text if @p path is older than @p limit, or never happened and the start is. */
QString ifOld(const StoredStatus &status, const QString &path, Seconds limit, const char *what)
{
    const Seconds age = silence(status, path);
    if (age <= limit)
        return {};
    const QString text = QLatin1String(what);
    return status.age(path) ? QStringLiteral("%1 is %2 old").arg(text, duration(age))
                            : QStringLiteral("no %1 for %2").arg(text, duration(age));
}

/** True if the last try of @p part failed. */
bool hasFailed(const StoredStatus &status, const QString &part, const char *success)
{
    const QDateTime failure = status.time(part + QLatin1String(".lastFailure.time"));
    const QDateTime good = status.time(part + QLatin1Char('.') + QLatin1String(success));
    return failure.isValid() && (!good.isValid() || failure > good);
}

QString reasonOf(const StoredStatus &status, const QString &part)
{
    return status.text(part + QLatin1String(".lastFailure.reason"));
}

/** The first text that is not empty, of attendance and presence. */
template <typename Find> QString inQueues(Find find)
{
    for (const QString &queue : { QStringLiteral("attendance"), QStringLiteral("presence") }) {
        const QString text = find(queue);
        if (!text.isEmpty())
            return text;
    }
    return {};
}

QString hangs(const StoredStatus &status)
{
    const Seconds interval(status.number(QStringLiteral("watchdog.interval")));
    const Seconds age = status.age(status.signOfLife());
    if (age <= 3 * std::max(interval, 5s))
        return {};
    return QStringLiteral("no sign of life for ") + duration(age);
}

QString schedule(const StoredStatus &status)
{
    return ifOld(status, QStringLiteral("schedule.received"), 1h, "schedule");
}

QString scheduleRefresh(const StoredStatus &status)
{
    const QString part = QStringLiteral("schedule");
    return hasFailed(status, part, "received")
        ? QStringLiteral("the last refresh of the schedule failed: ") + reasonOf(status, part)
        : QString();
}

QString room(const StoredStatus &status)
{
    const bool isWanted = status.text(QStringLiteral("view")) != QLatin1String("Default")
        && status.time(QStringLiteral("schedule.received")).isValid();
    return isWanted && !status.flag(QStringLiteral("schedule.roomFound"))
        ? QStringLiteral("the schedule does not know room %1")
              .arg(status.number(QStringLiteral("room.id")))
        : QString();
}

QString reader(const StoredStatus &status)
{
    return status.flag(QStringLiteral("reader.expected"))
            && status.text(QStringLiteral("reader.state")) == QLatin1String("missing")
        ? QStringLiteral("no card reader: cards are not read")
        : QString();
}

QString logging(const StoredStatus &status)
{
    return status.text(QStringLiteral("reader.logging")) == QLatin1String("stopped")
        ? QStringLiteral("logging has stopped until a restart, see the journal")
        : QString();
}

QString storage(const StoredStatus &status)
{
    return status.text(QStringLiteral("reader.logging")) == QLatin1String("no storage")
        ? QStringLiteral("records cannot be written to the disk")
        : QString();
}

QString oldRecords(const StoredStatus &status)
{
    return inQueues([&status](const QString &queue) {
        const auto age = status.age(queue + QLatin1String(".oldest"));
        return age && *age > 1h
            ? QStringLiteral("%1 of %2 wait, one for %3; see --spool")
                  .arg(count(status.number(queue + QLatin1String(".waiting")), "record"), queue,
                       duration(*age))
            : QString();
    });
}

QString failingRecords(const StoredStatus &status)
{
    return inQueues([&status](const QString &queue) {
        return status.number(queue + QLatin1String(".waiting")) > 0
                && hasFailed(status, queue, "lastSuccess")
            ? QStringLiteral("the last record of %1 was not accepted: %2")
                  .arg(queue, reasonOf(status, queue))
            : QString();
    });
}

QString token(const StoredStatus &status)
{
    const auto age = status.age(QStringLiteral("token.validUntil"));
    if (age ? *age <= 0s : silence(status, QStringLiteral("token.validUntil")) <= 1min)
        return {};
    const QString reason = reasonOf(status, QStringLiteral("token"));
    return (age ? QStringLiteral("the access token has expired")
                : QStringLiteral("no access token"))
        + (reason.isEmpty() ? QString() : QLatin1String(": ") + reason);
}

QString configuration(const StoredStatus &status)
{
    return ifOld(status, QStringLiteral("configuration.received"), 1h, "configuration");
}

QString clock(const StoredStatus &status)
{
    return status.value(QStringLiteral("clockSynchronised")) == QJsonValue(false)
        ? QStringLiteral("the clock follows no time server")
        : QString();
}

QString picture(const StoredStatus &status)
{
    return ifOld(status, QStringLiteral("lastFrame"), 15min, "picture");
}

QString crashed(const StoredStatus &status)
{
    const Seconds age = silence(status, QStringLiteral("started"));
    const int crashes = status.number(QStringLiteral("crashes"));
    return crashes > 0 && age < 1h ? QStringLiteral("ended unexpectedly %1 since boot, runs for %2")
                                         .arg(count(crashes, "time"), duration(age))
                                   : QString();
}

/** What is wrong with a screen, the worst first. */
constexpr std::array rules {
    Rule { "hangs", Health::Failing, &hangs },
    Rule { "schedule", Health::Failing, &schedule },
    Rule { "reader", Health::Failing, &reader },
    Rule { "logging", Health::Failing, &logging },
    Rule { "storage", Health::Failing, &storage },
    Rule { "picture", Health::Degraded, &picture },
    Rule { "room", Health::Degraded, &room },
    Rule { "schedule-refresh", Health::Degraded, &scheduleRefresh },
    Rule { "records-old", Health::Degraded, &oldRecords },
    Rule { "records-failing", Health::Degraded, &failingRecords },
    Rule { "token", Health::Degraded, &token },
    Rule { "configuration", Health::Degraded, &configuration },
    Rule { "clock", Health::Degraded, &clock },
    Rule { "crashed", Health::Degraded, &crashed },
};

/** A kiosk that runs but has not written its status yet. */
QVector<Problem> problemsOfStart(const StoredStatus &status)
{
    const Seconds age = status.age(status.lockTime());
    return { { QStringLiteral("starts"), age > 1min ? Health::Failing : Health::Degraded,
               QStringLiteral("started %1 ago, nothing drawn yet").arg(duration(age)) } };
}

} // namespace

QVector<Problem> findProblems(const StoredStatus &status)
{
    if (!status.isRunning())
        return {};
    if (!status.isPresent())
        return problemsOfStart(status);
    QVector<Problem> problems;
    for (const Rule &rule : rules)
        problems.append({ QLatin1String(rule.name), rule.level, rule.find(status) });
    return problems;
}

Health healthOf(const StoredStatus &status, const QVector<Problem> &problems)
{
    Health worst = status.isRunning() ? Health::Healthy : Health::NotRunning;
    for (const Problem &problem : problems) {
        if (!problem.text.isEmpty())
            worst = std::max(worst, problem.level);
    }
    return worst;
}

QString nameOf(Health health)
{
    constexpr std::array names { "healthy", "degraded", "failing", "not running" };
    return QLatin1String(names.at(static_cast<size_t>(health)));
}

int exitStatusOf(Health health)
{
    return health == Health::Healthy ? 0 : static_cast<int>(health) + 1;
}
