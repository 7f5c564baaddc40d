// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/statusformats.h"

#include "net/errortext.h"
#include "status/statustext.h"
#include "status/storedstatus.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace std::chrono_literals;

namespace {

/** Collects the lines of the text. Values may come from outside, and a terminal obeys them. */
class Table
{
public:
    void add(const char *what, const QString &value)
    {
        constexpr int width = 15;
        constexpr int maxLength = 300;
        m_text += QString::fromLatin1(what).leftJustified(width) + printableLine(value, maxLength)
            + QLatin1Char('\n');
    }
    void addGap() { m_text += QLatin1Char('\n'); }
    [[nodiscard]] QByteArray text() const { return m_text.toUtf8(); }

private:
    QString m_text;
};

QString ago(const StoredStatus &status, const QString &path, const char *never)
{
    const auto age = status.age(path);
    return age ? duration(*age) + QLatin1String(" ago") : QString::fromLatin1(never);
}

/** "; last failure 3 min ago: HTTP 503", or nothing. */
QString failureOf(const StoredStatus &status, const QString &part)
{
    const QString path = part + QLatin1String(".lastFailure.");
    const auto age = status.age(path + QLatin1String("time"));
    return age ? QStringLiteral("; last failure %1 ago: %2")
                     .arg(duration(*age), status.text(path + QLatin1String("reason")))
               : QString();
}

QString describeKiosk(const StoredStatus &status)
{
    const int restarts = status.number(QStringLiteral("restarts"));
    const int crashes = status.number(QStringLiteral("crashes"));
    QString text = QStringLiteral("version %1, runs for %2")
                       .arg(status.text(QStringLiteral("version")),
                            duration(status.age(QStringLiteral("started")).value_or(0s)));
    if (restarts > 0)
        text += QStringLiteral(", restarted ") + count(restarts, "time");
    if (crashes > 0)
        text += QStringLiteral(", ended unexpectedly ") + count(crashes, "time");
    return text;
}

QString describeToken(const StoredStatus &status)
{
    const auto age = status.age(QStringLiteral("token.validUntil"));
    const QString text = !age
        ? QStringLiteral("none yet")
        : QStringLiteral("%1, by %2")
              .arg(*age < 0s ? QStringLiteral("valid for ") + duration(-*age)
                             : QStringLiteral("expired ") + duration(*age) + QStringLiteral(" ago"),
                   status.text(QStringLiteral("token.grant")));
    return text + failureOf(status, QStringLiteral("token"));
}

QString describeReader(const StoredStatus &status)
{
    const QString port = status.text(QStringLiteral("reader.port"));
    QString text = status.text(QStringLiteral("reader.state"));
    if (!port.isEmpty())
        text += QStringLiteral(" at ") + port;
    if (!status.flag(QStringLiteral("reader.expected")))
        text += QStringLiteral(", not needed");
    return text + QStringLiteral(", last card ")
        + ago(status, QStringLiteral("reader.lastCard"), "never");
}

QString describeQueue(const StoredStatus &status, const QString &queue)
{
    const auto path
        = [&queue](const char *key) { return queue + QLatin1Char('.') + QLatin1String(key); };
    if (!status.flag(path("enabled")) && status.number(path("waiting")) == 0)
        return QStringLiteral("off");
    QString text = status.value(path("waiting")).isNull()
        ? QStringLiteral("not counted yet")
        : QStringLiteral("%1 waiting").arg(status.number(path("waiting")));
    if (const auto age = status.age(path("oldest")))
        text += QStringLiteral(", the oldest for ") + duration(*age);
    text += QStringLiteral(", %1 sent").arg(status.number(path("sent")));
    if (status.value(path("lastSuccess")).isString())
        text += QStringLiteral(" (last %1)").arg(ago(status, path("lastSuccess"), ""));
    return text + QStringLiteral(", %1 refused").arg(status.number(path("refused")))
        + failureOf(status, queue);
}

void addParts(Table &table, const StoredStatus &status)
{
    const auto clock = status.value(QStringLiteral("clockSynchronised"));
    table.add("kiosk", describeKiosk(status));
    table.add("sign of life", duration(status.age(status.signOfLife())) + QLatin1String(" ago"));
    table.add("screen",
              status.text(QStringLiteral("view")) + QLatin1String(", picture ")
                  + ago(status, QStringLiteral("lastFrame"), "never"));
    table.add("schedule",
              QStringLiteral("%1, %2").arg(
                  ago(status, QStringLiteral("schedule.received"), "none yet"),
                  count(status.number(QStringLiteral("schedule.events")), "event"))
                  + failureOf(status, QStringLiteral("schedule")));
    table.add("token", describeToken(status));
    table.add("configuration",
              ago(status, QStringLiteral("configuration.received"), "none yet")
                  + failureOf(status, QStringLiteral("configuration")));
    table.add("reader", describeReader(status));
    table.add("attendance", describeQueue(status, QStringLiteral("attendance")));
    table.add("presence", describeQueue(status, QStringLiteral("presence")));
    table.add("notices",
              QStringLiteral("%1 on the screen until somebody closes them")
                  .arg(status.number(QStringLiteral("notices"))));
    table.add("clock",
              clock.isNull()       ? QStringLiteral("unknown")
                  : clock.toBool() ? QStringLiteral("synchronised")
                                   : QStringLiteral("not synchronised"));
    table.add("watchdog",
              QStringLiteral("%1, %2 of life late")
                  .arg(status.flag(QStringLiteral("watchdog.enabled")) ? QStringLiteral("on")
                                                                       : QStringLiteral("off"),
                       count(status.number(QStringLiteral("watchdog.missed")), "sign")));
}

QJsonArray toJson(const QVector<Problem> &problems)
{
    QJsonArray found;
    for (const Problem &problem : problems) {
        if (!problem.text.isEmpty())
            found.append(QJsonObject { { QStringLiteral("name"), problem.name },
                                       { QStringLiteral("level"), nameOf(problem.level) },
                                       { QStringLiteral("text"), problem.text } });
    }
    return found;
}

} // namespace

QByteArray statusformats::text(const StoredStatus &status, const QVector<Problem> &problems)
{
    Table table;
    QString room;
    if (!status.json().isEmpty())
        room = QStringLiteral("\"%1\" (room %2): ")
                   .arg(status.text(QStringLiteral("room.name")))
                   .arg(status.number(QStringLiteral("room.id")));
    table.add("Lumenboard", room + nameOf(healthOf(status, problems)));
    for (const Problem &problem : problems) {
        if (!problem.text.isEmpty())
            table.add(problem.level == Health::Failing ? "  FAILING" : "  degraded", problem.text);
    }
    if (status.isPresent()) {
        table.addGap();
        addParts(table, status);
    } else if (!status.isRunning() && status.signOfLife().isValid()) {
        table.add("  last seen",
                  duration(status.age(status.signOfLife()))
                      + (status.starts().isRunning
                             ? QLatin1String(" ago, ended unexpectedly")
                             : QLatin1String(" ago, ended as it was told to")));
    }
    return table.text();
}

QByteArray statusformats::json(const StoredStatus &status, const QVector<Problem> &problems)
{
    QJsonObject all = status.isPresent() ? status.json() : QJsonObject();
    all.insert(QStringLiteral("health"), nameOf(healthOf(status, problems)));
    all.insert(QStringLiteral("problems"), toJson(problems));
    all.insert(QStringLiteral("restarts"), std::max(0, status.starts().starts - 1));
    all.insert(QStringLiteral("crashes"), status.starts().crashes);
    all.insert(QStringLiteral("signOfLife"),
               status.signOfLife().isValid() ? QJsonValue(status.signOfLife().toString(Qt::ISODate))
                                             : QJsonValue());
    return QJsonDocument(all).toJson();
}
