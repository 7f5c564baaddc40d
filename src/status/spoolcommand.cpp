// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "status/spoolcommand.h"

#include "base/exceptions.h"
#include "config/scratchsettings.h"
#include "net/errortext.h"
#include "spool/durablefile.h"
#include "status/spoollist.h"
#include "status/statusfiles.h"
#include "status/statustext.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTextCodec>

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

constexpr qint64 maxBytes = 1 << 20; // of a record; ours have about 200

void print(const QString &line)
{
    constexpr int maxLength = 4000;
    // Records and names of foreign files come from outside, and a terminal obeys them.
    std::fprintf(stdout, "%s\n", printableLine(line, maxLength).toUtf8().constData());
}

QString since(const QDateTime &time)
{
    return duration(std::chrono::seconds(time.secsTo(QDateTime::currentDateTimeUtc())));
}

/** The content; nothing if the record is gone, since the kiosk sends and removes meanwhile. */
std::optional<QByteArray> contentOf(const WaitingRecord &record)
{
    QFile file(record.path);
    if (file.open(QIODevice::ReadOnly))
        return file.read(maxBytes);
    if (file.exists())
        throw Exception(
            QStringLiteral("%1 cannot be read: %2").arg(record.path, file.errorString()));
    return {};
}

int list(const SpoolList &spool)
{
    const QString row = QStringLiteral("%1 %2 %3 %4  %5");
    print(row.arg(QStringLiteral("QUEUE"), -10)
              .arg(QStringLiteral("NAME"), -12)
              .arg(QStringLiteral("WAITS FOR"), -12)
              .arg(QStringLiteral("TRIES"), 5)
              .arg(QStringLiteral("LAST ANSWER")));
    for (const WaitingRecord &record : spool.records()) {
        const QString answer = record.tries == 0
            ? QStringLiteral("not tried since the start of the kiosk")
            : QStringLiteral("%1, %2 ago").arg(record.answer, since(record.lastTry));
        print(row.arg(record.queue, -10)
                  .arg(record.name, -12)
                  .arg(since(record.made), -12)
                  .arg(record.tries, 5)
                  .arg(answer));
    }
    const int records = spool.records().size();
    print(records == 0 ? QStringLiteral("Nothing waits.")
                       : count(records, "record") + QStringLiteral(" in all."));
    return EXIT_SUCCESS;
}

int show(const SpoolList &spool, const QString &name)
{
    for (const WaitingRecord &record : spool.records()) {
        const auto content = record.name == name ? contentOf(record) : std::nullopt;
        if (!content)
            continue;
        const auto lines = QString::fromUtf8(*content).split(QLatin1Char('\n'));
        for (const QString &line : lines)
            print(line);
        return EXIT_SUCCESS;
    }
    throw Exception(QStringLiteral("No record %1 waits.").arg(name));
}

QJsonObject toJson(const WaitingRecord &record, const QByteArray &content)
{
    QTextCodec::ConverterState state;
    const QString text
        = QTextCodec::codecForName("UTF-8")->toUnicode(content.constData(), content.size(), &state);
    const bool isText = state.invalidChars == 0 && state.remainingChars == 0;
    return { { QStringLiteral("queue"), record.queue },
             { QStringLiteral("name"), record.name },
             { QStringLiteral("made"), record.made.toString(Qt::ISODateWithMs) },
             isText ? QPair(QStringLiteral("content"), QJsonValue(text))
                    : QPair(QStringLiteral("base64"),
                            QJsonValue(QString::fromLatin1(content.toBase64()))) };
}

int exportTo(const SpoolList &spool, const QString &path)
{
    QJsonArray records;
    for (const WaitingRecord &record : spool.records()) {
        if (const auto content = contentOf(record))
            records.append(toJson(record, *content));
    }
    const QJsonObject all {
        { QStringLiteral("format"), statusfiles::format },
        { QStringLiteral("exported"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate) },
        { QStringLiteral("records"), records },
    };
    DurableFile file(QFileInfo(path).absoluteFilePath());
    file.write(QJsonDocument(all).toJson());
    if (!file.commitAs(file.path()))
        throw Exception(QStringLiteral("%1 exists already.").arg(path));
    const int gone = spool.records().size() - records.size();
    print(QStringLiteral("%1 written to %2%3")
              .arg(count(records.size(), "record"), path,
                   gone > 0 ? QStringLiteral(", %1 sent meanwhile.").arg(gone)
                            : QStringLiteral(".")));
    return EXIT_SUCCESS;
}

int run(const QString &folder, const QStringList &arguments)
{
    const ScratchSettings settings; // reading the user's own may tighten and mend their file
    const QString action = arguments.value(0, QStringLiteral("list"));
    const bool isComplete = arguments.size() == (action == QLatin1String("list") ? 1 : 2);
    if (arguments.isEmpty() || (isComplete && action == QLatin1String("list")))
        return list(SpoolList::read(folder));
    if (isComplete && action == QLatin1String("show"))
        return show(SpoolList::read(folder), arguments.at(1));
    if (isComplete && action == QLatin1String("export"))
        return exportTo(SpoolList::read(folder), arguments.at(1));
    throw Exception(QStringLiteral("--spool takes list, show NAME or export FILE. See --help."));
}

} // namespace

int runSpoolCommand(const QString &folder, const QStringList &arguments)
{
    try {
        return run(folder, arguments);
    } catch (const std::exception &e) {
        std::fprintf(stderr, "%s\n", e.what());
        return EXIT_FAILURE;
    }
}
