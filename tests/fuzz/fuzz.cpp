// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/startup.h"
#include "attendance/attendancenamecache.h"
#include "attendance/attendancerequest.h"
#include "attendance/attendanceresponse.h"
#include "base/exceptions.h"
#include "base/json.h"
#include "config/config.h"
#include "config/effectivesettings.h"
#include "net/tokenresponse.h"
#include "presence/tallyxlogentity.h"
#include "presence/tallyxservice.h"
#include "reader/linesplitter.h"
#include "schedule/eventdata.h"
#include "support/fakereply.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDebug>
#include <QDirIterator>
#include <QRegularExpression>

#include <cassert>
#include <cstring>
#include <ctime>
#include <random>
#include <sys/mman.h>
#include <unistd.h>

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

namespace {

/** The path of a file with these bytes, in memory. */
QString fileWith(const QByteArray &bytes)
{
    static const int file = memfd_create("input", 0);
    assert(ftruncate(file, 0) == 0);
    assert(pwrite(file, bytes.constData(), size_t(bytes.size()), 0) == bytes.size());
    return QStringLiteral("/proc/self/fd/%1").arg(file);
}

/** Starts with these bytes as the user's settings file. */
Config &startWith(const QByteArray &settings)
{
    delete Config::instance();
    const QDir folder(qEnvironmentVariable("XDG_CONFIG_HOME"));
    folder.mkpath(QStringLiteral("Kettlewood"));
    QFile file(folder.filePath(QStringLiteral("Kettlewood/Lumenboard2.conf")));
    assert(file.open(QIODevice::WriteOnly) && file.write(settings) >= 0 && file.flush());
    static QDateTime stamp = QDateTime::currentDateTimeUtc();
    stamp = stamp.addSecs(-1); // otherwise Qt might take the file for unchanged
    file.setFileTime(stamp, QFileDevice::FileModificationTime);
    return *Config::instance();
}

template <QJsonObject (*read)(QNetworkReply &)> void readReply(const QByteArray &body)
{
    FakeReply reply { QUrl() };
    reply.feed(body);
    assert(tallyxservice::text(read(reply), "message").size() <= 2000);
}

/** The same configuration a second time changes nothing. */
void readConfiguration(const QByteArray &body)
{
    Config &config = startWith({});
    const auto document = readJson(body);
    config.applyConfiguration(document);
    QObject::connect(&config, &Config::configChanged, [] { assert(false); });
    config.applyConfiguration(document);
}

QByteArrayList lines(const QByteArray &bytes, int pieceLength)
{
    LineSplitter splitter;
    QByteArrayList lines;
    for (int at = 0; at < bytes.size(); at += pieceLength) {
        splitter.append(bytes.mid(at, pieceLength));
        while (const auto line = splitter.takeLine())
            lines.append(*line);
    }
    return lines;
}

/** Pieces do not change the lines. */
void readLines(const QByteArray &bytes)
{
    assert(lines(bytes, 7) == lines(bytes, bytes.size()));
}

void readAttendanceRecord(const QByteArray &file)
{
    AttendanceRequest record(fileWith(file));
    record.build();
    const AttendanceRequest again(fileWith(record.data()));
    assert(again.transponderId() == record.transponderId());
    assert(again.locationId() == record.locationId());
}

void readPresenceRecord(const QByteArray &file)
{
    const QJsonDocument record = TallyxLogEntity(fileWith(file)).toJson();
    assert(TallyxLogEntity(fileWith(record.toJson())).toJson() == record);
}

void readNames(const QByteArray &file)
{
    qputenv("LB_ATTENDANCE_NAME_CACHE_FILE", fileWith(file).toUtf8());
    AttendanceNameCache();
}

void readSchedule(const QByteArray &body)
{
    QBuffer buffer;
    buffer.setData(body);
    buffer.open(QIODevice::ReadOnly);
    (void)EventData::fromDocument(&buffer);
}

/** A parser of bytes from outside. It may throw an Exception. */
struct Target
{
    const char *name; ///< also of its folder of seeds
    void (*read)(const QByteArray &bytes);
};

constexpr int maxBytes = 1024 * 1024; // of most responses

const Target targets[] = {
    { "attendance", [](const QByteArray &body) { AttendanceResponse(body).log(); } },
    { "attendance-record", &readAttendanceRecord },
    { "configuration", &readConfiguration },
    { "names", &readNames },
    { "presence", &readReply<&tallyxservice::readAcknowledgement> },
    { "presence-record", &readPresenceRecord },
    { "presence-status", &readReply<&tallyxservice::readStatus> },
    { "schedule", &readSchedule },
    { "serial", &readLines },
    { "settings", [](const QByteArray &file) { (void)effectiveSettings(startWith(file)); } },
    { "token", [](const QByteArray &body) { (void)parseTokenResponse(body); } },
};

const Target *target = nullptr;

void read(const QByteArray &bytes)
{
    try {
        target->read(bytes);
    } catch (const Exception &) { // NOLINT(bugprone-empty-catch): bad bytes are refused
    }
}

/** @p document in three parts. The middle one is a likely unit: an element, a line, a value. */
std::array<QByteArray, 3> cut(const QByteArray &document, std::mt19937 &random)
{
    const char mark = "<>,\n\" "[random() % 6];
    QVector<int> cuts { 0, document.size() };
    for (int at = document.indexOf(mark); at >= 0; at = document.indexOf(mark, at + 1))
        cuts.append(at);
    const auto any = [&] { return cuts[int(random() % unsigned(cuts.size()))]; };
    const auto [begin, end] = std::minmax({ any(), any() });
    return { document.left(begin), document.mid(begin, end - begin), document.mid(end) };
}

/** About @p size bytes of @p unit. The numbers in it count in steps, unless the step is 0. */
QByteArray repeated(const QByteArray &unit, int size, qint64 step)
{
    if (step == 0 || unit.isEmpty())
        return unit.repeated(unit.isEmpty() ? 0 : size / unit.size());
    const QString text = QString::fromLatin1(unit);
    const QStringList pieces = text.split(QRegularExpression(QStringLiteral("[0-9]+")));
    QByteArray all;
    for (qint64 number = step; all.size() < size; number += step)
        all += pieces.join(QString::number(number)).toLatin1();
    return all;
}

/** The processor time of a reading. */
double seconds(const QByteArray &bytes)
{
    const std::clock_t begin = std::clock();
    read(bytes);
    return double(std::clock() - begin) / CLOCKS_PER_SEC;
}

/**
 * Repeats units of the seeds for some seconds. Doubling an input twice may cost at most 4.84
 * times the time; two doublings stand out from noise. Short times do not count.
 */
bool isCheap(const QByteArrayList &seeds, int secondsToRun)
{
    // With the last one all numbers have the same qHash().
    constexpr std::array<qint64, 3> steps { 0, 1, 0x100000002 };
    std::mt19937 random; // NOLINT(cert-msc51-cpp): the same units each time
    int trials = 0;
    for (const std::time_t end = std::time(nullptr) + secondsToRun; std::time(nullptr) < end;) {
        const auto parts = cut(seeds[int(random() % unsigned(seeds.size()))], random);
        const auto rest = cut(parts[2], random); // two units, as definitions and their uses
        const qint64 step = steps[random() % steps.size()];
        const auto input = [&](int size) {
            return parts[0] + repeated(parts[1], size / 2, step) + rest[0]
                + repeated(rest[1], size / 2, step) + rest[2];
        };
        int size = 8192;
        while (4 * size < maxBytes && seconds(input(size)) < 0.01)
            size *= 2;
        int dearReadings = 0;
        while (seconds(input(4 * size)) > 2.2 * 2.2 * seconds(input(size)) + 0.05)
            if (++dearReadings == 10) { // more than noise
                qInstallMessageHandler(nullptr);
                qCritical() << target->name << size << "bytes: four times as many take too long."
                            << "Step" << step << "of" << parts[1].left(500) << rest[1].left(500);
                return false;
            }
        ++trials;
    }
    fprintf(stderr, "%s: %d documents cost no more than they should\n", target->name, trials);
    return true;
}

} // namespace

/** FUZZ_TARGET names the target. FUZZ_COST has seconds to check its cost with the last folder. */
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication app(*argc, *argv);
    nameApplication();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    for (const Target &each : targets) {
        if (qgetenv("FUZZ_TARGET") == each.name)
            target = &each;
    }
    assert(target != nullptr);
    const int costSeconds = qEnvironmentVariableIntValue("FUZZ_COST");
    if (costSeconds == 0)
        return 0;
    QByteArrayList seeds;
    QDirIterator each(QString::fromLocal8Bit((*argv)[*argc - 1]), QDir::Files);
    while (each.hasNext()) {
        QFile file(each.next());
        assert(file.open(QIODevice::ReadOnly));
        seeds.append(file.readAll());
    }
    std::_Exit(isCheap(seeds, costSeconds) ? 0 : 1);
}

/** In half of the cases drops or doubles a unit: Qt's parsers give libFuzzer no coverage. */
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned seed)
{
    std::mt19937 random(seed);
    if (random() % 2 == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    const auto parts = cut({ reinterpret_cast<char *>(data), int(size) }, random);
    const QByteArray changed = parts[0] + parts[1].repeated(int(random() % 2) * 2) + parts[2];
    const size_t length = std::min(maxSize, size_t(changed.size()));
    std::memcpy(data, changed.constData(), length);
    return length;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    read(QByteArray(reinterpret_cast<const char *>(data), int(size)));
    return 0;
}
