// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "attendance/attendancenamecache.h"
#include "attendance/attendancequeue.h"
#include "net/accesstoken.h"
#include "presence/tallyxqueue.h"
#include "support/crashdisk.h"
#include "support/fakereply.h"
#include "support/notices.h"
#include "support/testcase.h"

#include <QDirIterator>
#include <QNetworkAccessManager>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <optional>

namespace {

const std::function<int(int)> oldest = [](int) { return 0; };
const std::function<int(int)> newest = [](int count) { return count - 1; };

/** The card of a whole record, otherwise 0. Cards with odd numbers are for attendance. */
int cardOf(const QByteArray &record)
{
    static const QRegularExpression whole(
        "^(<.*<transponderId>|\\{.*\"tid\": )(\\d+)(</transponderId></attendance>|,.*\\})\\s*$"_s,
        QRegularExpression::DotMatchesEverythingOption);
    return whole.match(QString::fromUtf8(record)).captured(2).toInt();
}

/** The cards of the records among @p files, sorted. */
QList<int> cards(const Files &files)
{
    QList<int> found;
    for (auto each = files.begin(); each != files.end(); ++each)
        if (!QFileInfo(each.key()).isHidden())
            found.append(cardOf(*each));
    std::sort(found.begin(), found.end());
    return found;
}

/** What @p files break of what was promised; empty if nothing. */
QString violation(const DiskImage &promised, const Files &files)
{
    const QList<int> list = cards(files);
    const QSet<int> found(list.begin(), list.end());
    if (found.contains(0) || found.size() != list.size())
        return "broken or twice"_s;
    if (!found.contains(promised.kept))
        return "lost"_s;
    return found.intersects(promised.gone) ? "came back"_s : QString();
}

/** The services; the test answers each request. */
class FakeServices : public QNetworkAccessManager
{
public:
    QList<std::pair<QPointer<FakeReply>, int>> open; ///< and the card; 0 for a status query
    QList<int> sent;
    QSet<int> answered;
    std::function<void()> onAnswer = [] {};

    void answer(int index, bool isGood)
    {
        const auto [reply, card] = open.takeAt(index);
        if (!reply)
            return; // of an earlier run
        if (!isGood)
            return reply->fail(QNetworkReply::ConnectionRefusedError, "refused"_s);
        answered.insert(card);
        onAnswer();
        reply->succeed(card % 2 == 0
                           ? R"({"present": true, "message": "Good."})"
                           : "<attendanceResponse><serverTime>2026-11-23T10:00:00</serverTime>"
                             "<clientTime>2026-11-23T10:00:00</clientTime><message>Good.</message>"
                             "<notificationType>INFO</notificationType><timeout>5000</timeout>"
                             "</attendanceResponse>");
    }

protected:
    QNetworkReply *createRequest(Operation, const QNetworkRequest &request,
                                 QIODevice *body) override
    {
        auto *reply = new FakeReply(request.url());
        const int card = body ? cardOf(body->readAll()) : 0;
        open.append({ reply, card });
        if (card)
            sent.append(card);
        if (card && answered.contains(card))
            qCritical() << "Sent again:" << card;
        return reply;
    }
};

/** One run of the program. */
struct Life
{
    FakeServices &services;
    AttendanceNameCache names {};
    AttendanceQueue attendance { services, names, {} };
    TallyxQueue presence { services, {} };

    static void runEvents()
    {
        for (int i = 0; i < 6; ++i) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    void startPass()
    {
        attendance.process();
        presence.process();
    }
    void answerAll(bool isGood) const
    {
        for (runEvents(); !services.open.isEmpty(); runEvents())
            services.answer(0, isGood);
    }
};

} // namespace

class TestDurability : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        for (const char *text :
             { "Failed to load name cache", "Error logging", "Plenar location ID", "FATAL ERROR",
               "Failed to query", "Failed to s", "Failed to remove a sent attendance record" })
            log().allow(QLatin1String(text));
        LBAPI::instance();
        accesstoken::publish("token"_s);
        m_folder.emplace();
        m_disk.emplace();
        const QByteArray path = QFile::encodeName(m_folder->path());
        qputenv("LB_ATTENDANCE_SPOOL_DIR", path + "/spool/attendance");
        qputenv("LB_TALLYX_SPOOL_DIR", path + "/spool/presence");
        qputenv("LB_ATTENDANCE_NAME_CACHE_FILE", path + "/names");
    }

    void cleanup()
    {
        m_disk.reset();
        TestCase::cleanup();
    }

    void keepsThePromiseWhenCallsFail_data()
    {
        columns<int, int, int>("moment", "call", "code");
        const char *moments[]
            = { "card", "presence", "choice", "change of mind", "answer", "booking" };
        const char *calls[] = { "", "create", "write", "fsync", "rename", "folder sync", "unlink" };
        for (int moment = Card; moment <= Booking; ++moment)
            for (int call = CrashDisk::Create; call < CrashDisk::AllCalls; ++call)
                for (const int code : { ENOSPC, EIO })
                    QTest::addRow("%s, %s, %d", moments[moment], calls[call], code)
                        << moment << call << code;
    }

    void keepsThePromiseWhenCallsFail()
    {
        const int moment = at<int>("moment");
        const auto call = CrashDisk::Call(at<int>("call"));
        const bool isFirst = moment == Card || moment == Presence;
        const bool isAnswered = moment == Answer || moment == Booking;
        for (const char *each : { "spool/attendance", "spool/presence" })
            QVERIFY(QDir(m_folder->path()).mkpath(QLatin1String(each)));
        const auto failIf = [&](bool isTime) {
            if (isTime)
                m_disk->fail(call, at<int>("code"));
        };
        FakeServices services;
        Life life { services };
        failIf(isFirst);
        if (moment == Card || moment == Answer)
            life.attendance.log(1);
        else
            life.presence.begin(2);
        if (services.sent.isEmpty() && !services.open.isEmpty()) {
            services.answer(0, true); // proposes to leave
            life.runEvents();
            failIf(moment != Presence);
            notice()->clickButton(0);
            if (moment == ChangeOfMind)
                notice()->clickButton(1);
            notice()->confirm();
            life.runEvents();
        }
        failIf(moment == Answer);
        life.answerAll(isAnswered);
        m_disk->fail(CrashDisk::None);

        const bool isHit = (call == CrashDisk::Unlink) == isAnswered;
        const char *told = isAnswered ? (isHit ? "Failed to remove" : "Good.")
                                      : (isHit ? "Failed to log your" : "A temporary error");
        const QString message = notice()->message();
        QVERIFY2(message.startsWith(QLatin1String(told)), qPrintable(message));
        QVERIFY(!isHit || !(isFirst || isAnswered)
                || message.endsWith(at<int>("code") == ENOSPC ? "is full."_s
                                                              : "cannot be written to."_s));
        const Files files = m_disk->image().after(newest);
        QCOMPARE(files.size(), isHit == isAnswered ? 1 : 0); // nothing unfinished either
        QVERIFY(files.isEmpty() || cards(files).constFirst() > 0);
        QVERIFY(moment != Choice || isHit || files.first().contains("\"type\": 1"));
        if (call != CrashDisk::SyncFolder) // else nobody can know
            QCOMPARE(m_disk->image().after(oldest), files);
    }

    void losesAndDoublesNothingAtAnyPoint()
    {
        run();
        const auto steps = m_disk->steps();
        const std::function<int(int)> any = [this](int count) { return m_random.bounded(count); };
        DiskImage image;
        int restarts = 0;
        for (int i = 0; i < steps.size(); ++i) {
            DiskImage without = image;
            const int before = image.after(oldest).size();
            steps.at(i).second(image);
            for (const auto &choose : { newest, oldest, any }) {
                const Files files = image.after(choose);
                QCOMPARE(violation(image, files), QString());
                if (any(12) == 0 && ++restarts)
                    QCOMPARE(cardsAfterRestart(files), cards(files));
            }
            // Each sync that made a record durable is needed.
            const auto call = steps.at(i).first;
            if (call == CrashDisk::Sync
                || (call == CrashDisk::SyncFolder && image.after(oldest).size() > before))
                for (int next = i + 1; violation(without, without.after(oldest)).isEmpty();
                     ++next) {
                    QVERIFY2(next < steps.size(), qPrintable("sync %1 is not missed"_s.arg(i)));
                    steps.at(next).second(without);
                }
        }
        QVERIFY(steps.size() > 2000 && restarts > 500);
    }

private:
    enum Moment { Card, Presence, Choice, ChangeOfMind, Answer, Booking };

    /** From now on these records are kept, and these do not come back. */
    void promise(const QSet<int> &kept, const QSet<int> &gone)
    {
        m_disk->note(CrashDisk::None, [kept, gone](DiskImage &image) {
            image.kept = kept;
            image.gone = gone;
        });
    }

    /** Some lives of the program, half of which are ended by force, with random events. */
    void run()
    {
        constexpr int lives = 16;
        qInfo() << "Seed" << seed;
        FakeServices services;
        QSet<int> read;
        QSet<int> gone;
        services.onAnswer = [&] { promise(read - services.answered, gone); };
        for (int i = 1; i <= lives; ++i) {
            std::unique_ptr<Life> life(new Life { services });
            promise(read - services.answered, gone = services.answered);
            const QSet<int> earlier = read; // for a pass, whose removals are durable later
            life->startPass();
            for (int steps = i < lives ? 30 : 0; steps > 0; --steps) {
                takeRandomStep(*life, &read);
                life->runEvents();
                promise(read - services.answered, gone += services.answered - earlier);
            }
            if (i == lives) { // the removals of a pass are durable soon
                life->answerAll(true);
                [this] { QTRY_VERIFY(m_disk->image().after(oldest).isEmpty()); }();
            }
            const bool isKilled = i < lives && m_random.bounded(2) == 0;
            m_disk->fail(isKilled ? CrashDisk::AllCalls : CrashDisk::None);
            life.reset();
            m_disk->fail(CrashDisk::None);
            if (!isKilled)
                promise(read - services.answered, gone = services.answered);
        }
    }

    void takeRandomStep(Life &life, QSet<int> *read)
    {
        const int card = read->size() * 2;
        const int action = m_random.bounded(8);
        auto &open = life.services.open;
        const auto notices = LBAPI::instance()->findChildren<Notification *>();
        const auto question = std::find_if(notices.begin(), notices.end(), [this](auto *notice) {
            return notice->isConfirmable() && m_random.bounded(2) == 0;
        });
        if (action == 0) {
            life.attendance.log(card + 1);
            read->insert(card + 1);
        } else if (action == 1) {
            life.presence.begin(card + 2);
            read->insert(card + 2);
        } else if (action < 4 && question != notices.end()) {
            action == 2 ? (*question)->clickButton(m_random.bounded(2)) : (*question)->confirm();
        } else if (!open.isEmpty()) {
            life.services.answer(m_random.bounded(open.size()), m_random.bounded(6) > 0);
        }
    }

    /** The cards that are sent after a restart with these files. */
    [[nodiscard]] QList<int> cardsAfterRestart(const Files &files) const
    {
        const QString spool = m_folder->filePath("spool"_s);
        QDir(spool).removeRecursively();
        for (auto each = files.begin(); each != files.end(); ++each)
            settings::write(each.key(), QString::fromUtf8(*each));
        FakeServices services;
        Life life { services };
        life.startPass();
        life.answerAll(true);
        QDirIterator left(spool, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        std::sort(services.sent.begin(), services.sent.end());
        return left.hasNext() ? QList<int> { 0 } : services.sent;
    }

    static constexpr quint32 seed = 20261123;
    QRandomGenerator m_random { seed };
    std::optional<QTemporaryDir> m_folder;
    std::optional<CrashDisk> m_disk;
};

static RegisterTest<TestDurability> registerDurability;

#include "tst_durability.moc"
