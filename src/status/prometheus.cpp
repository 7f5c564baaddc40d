// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/statusformats.h"
#include "status/storedstatus.h"

namespace {

/** Writes metrics in the text format, each with its help and its type. */
class Metrics
{
public:
    explicit Metrics(const StoredStatus &status)
        : m_status(status)
    {
    }

    void begin(const char *name, const char *type, const char *help)
    {
        m_name = QByteArrayLiteral("lumenboard_") + name;
        m_text += "# HELP " + m_name + ' ' + help + "\n# TYPE " + m_name + ' ' + type + '\n';
    }
    /** @p labels as "{a=\"b\"}" or empty. */
    void sample(const QByteArray &value, const QByteArray &labels = {})
    {
        m_text += m_name + labels + ' ' + value + '\n';
    }
    void gauge(const char *name, const char *help, double value)
    {
        begin(name, "gauge", help);
        sample(number(value));
    }
    void counter(const char *name, const char *help, double value)
    {
        begin(name, "counter", help);
        sample(number(value));
    }
    /** The time at @p path, or 0 if it never came. */
    void time(const char *name, const char *help, const char *path)
    {
        gauge(name, help, seconds(m_status.time(QLatin1String(path))));
    }
    void flag(const char *name, const char *help, const char *path)
    {
        gauge(name, help, m_status.flag(QLatin1String(path)) ? 1 : 0);
    }
    [[nodiscard]] QByteArray text() const { return m_text; }

    [[nodiscard]] static QByteArray number(double value)
    {
        return QByteArray::number(value, 'f', QLocale::FloatingPointShortest);
    }
    [[nodiscard]] static double seconds(const QDateTime &time)
    {
        return time.isValid() ? double(time.toSecsSinceEpoch()) : 0;
    }
    [[nodiscard]] static QByteArray label(const char *name, const QString &value)
    {
        QByteArray quoted = value.toUtf8();
        quoted.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n");
        return QByteArray(name) + "=\"" + quoted + '"';
    }

private:
    const StoredStatus &m_status;
    QByteArray m_name;
    QByteArray m_text;
};

/** One metric of both queues. A value that is not there has no sample. */
struct QueueMetric
{
    const char *name;
    const char *type;
    const char *help;
    const char *key;
    bool isTime;
    bool isOptional;
};

constexpr QueueMetric queueMetrics[] {
    { "records_waiting", "gauge", "Records on disk that wait to be sent.", "waiting", false, true },
    { "oldest_record_timestamp_seconds", "gauge", "When the oldest waiting record was made.",
      "oldest", true, true },
    { "records_sent_total", "counter", "Records that the service has accepted.", "sent", false,
      false },
    { "records_refused_total", "counter", "Answers that refused a record.", "refused", false,
      false },
    { "last_success_timestamp_seconds", "gauge", "When a record was last accepted.", "lastSuccess",
      true, false },
    { "last_failure_timestamp_seconds", "gauge", "When a record last failed.", "lastFailure.time",
      true, false },
};

void addQueues(Metrics &metrics, const StoredStatus &status)
{
    for (const QueueMetric &metric : queueMetrics) {
        metrics.begin(metric.name, metric.type, metric.help);
        for (const QString &queue : { QStringLiteral("attendance"), QStringLiteral("presence") }) {
            const QString path = queue + QLatin1Char('.') + QLatin1String(metric.key);
            if (metric.isOptional && status.value(path).isNull())
                continue;
            const double value
                = metric.isTime ? Metrics::seconds(status.time(path)) : status.number(path);
            metrics.sample(Metrics::number(value), '{' + Metrics::label("queue", queue) + '}');
        }
    }
}

void addProblems(Metrics &metrics, const QVector<Problem> &problems)
{
    metrics.begin("problem", "gauge", "1 while this problem is there.");
    for (const Problem &problem : problems)
        metrics.sample(problem.text.isEmpty() ? "0" : "1",
                       '{' + Metrics::label("problem", problem.name) + ','
                           + Metrics::label("level", nameOf(problem.level)) + '}');
}

void addInfo(Metrics &metrics, const StoredStatus &status)
{
    metrics.begin("info", "gauge", "Version, room and start view of the screen.");
    metrics.sample("1",
                   '{' + Metrics::label("version", status.text(QStringLiteral("version"))) + ','
                       + Metrics::label("room", status.text(QStringLiteral("room.name"))) + ','
                       + Metrics::label("view", status.text(QStringLiteral("view"))) + '}');
}

void addParts(Metrics &metrics, const StoredStatus &status)
{
    metrics.time("start_time_seconds", "Start of the kiosk.", "started");
    metrics.gauge("sign_of_life_timestamp_seconds", "When all parts of the kiosk last answered.",
                  Metrics::seconds(status.signOfLife()));
    metrics.time("last_frame_timestamp_seconds", "Last picture drawn, up to 5 minutes late.",
                 "lastFrame");
    metrics.time("schedule_timestamp_seconds", "Last schedule read.", "schedule.received");
    metrics.gauge("schedule_events", "Events of the whole schedule.",
                  status.number(QStringLiteral("schedule.events")));
    metrics.time("schedule_last_failure_timestamp_seconds", "Last refresh that failed.",
                 "schedule.lastFailure.time");
    metrics.time("token_expiry_timestamp_seconds", "End of the access token.", "token.validUntil");
    metrics.time("configuration_timestamp_seconds", "Last configuration received.",
                 "configuration.received");
    metrics.flag("reader_expected", "1 if people hold up cards here.", "reader.expected");
    metrics.gauge("reader_up", "1 while the card reader is open.",
                  status.text(QStringLiteral("reader.state")) == QLatin1String("connected") ? 1
                                                                                            : 0);
    metrics.gauge("logging_stopped", "1 if no card is logged until a restart.",
                  status.text(QStringLiteral("reader.logging")) == QLatin1String("stopped") ? 1
                                                                                            : 0);
    metrics.time("last_card_timestamp_seconds", "Last card read.", "reader.lastCard");
    addQueues(metrics, status);
    metrics.gauge("notices", "Notices that stay until somebody closes them.",
                  status.number(QStringLiteral("notices")));
    if (!status.value(QStringLiteral("clockSynchronised")).isNull())
        metrics.flag("clock_synchronised", "1 if the clock follows a time server.",
                     "clockSynchronised");
    metrics.flag("watchdog_enabled", "1 if a kiosk that hangs is restarted.", "watchdog.enabled");
    metrics.counter("watchdog_missed_total", "Signs of life that were late.",
                    status.number(QStringLiteral("watchdog.missed")));
}

} // namespace

QByteArray statusformats::prometheus(const StoredStatus &status, const QVector<Problem> &problems)
{
    Metrics metrics(status);
    metrics.gauge("up", "1 while the kiosk runs.", status.isRunning() ? 1 : 0);
    metrics.gauge("health", "0 healthy, 1 degraded, 2 failing, 3 not running.",
                  static_cast<int>(healthOf(status, problems)));
    metrics.counter("restarts_total", "Starts since boot but for the first.",
                    std::max(0, status.starts().starts - 1));
    metrics.counter("crashes_total", "Ends since boot that nobody asked for.",
                    status.starts().crashes);
    if (status.isRunning())
        addProblems(metrics, problems);
    if (status.isPresent()) {
        addInfo(metrics, status);
        addParts(metrics, status);
    }
    return metrics.text();
}
