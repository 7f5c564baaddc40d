// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/exceptions.h"
#include "spool/queueledger.h"
#include "spool/recordqueue.h"
#include "support/testcase.h"

#include <QTemporaryDir>

using namespace std::chrono_literals;

namespace {

/** Sends nothing: the test ends each record. */
class FakeQueue : public RecordQueue
{
public:
    explicit FakeQueue(const Spool &spool)
        : RecordQueue(spool)
    {
    }

    [[nodiscard]] bool hasFresh() const override { return isBusy; }
    using RecordQueue::endResend;

    bool isBusy = false;
    bool areForeign = false;
    QStringList sent;

protected:
    [[nodiscard]] bool isFresh(const QString &) const override { return false; }
    void resend(const QString &path) override
    {
        sent.append(path);
        if (areForeign)
            throw AttendanceErrorException("no record"_s);
    }
    void logResendFailure(const Failure &) const override { }
    [[nodiscard]] QString logRemovalFailure(const Failure &) const override { return {}; }
};

} // namespace

class TestRecordQueue : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        m_folder.emplace();
        settings::set("spoolDir"_s, m_folder->path());
        for (int i = 0; i < 20; ++i)
            (void)m_spool.create("record");
    }

    void endsAPassThatGetsNowhere_data()
    {
        columns<bool, int>("isAnswered", "tries");
        row("no answer", false, 3);
        row("refused", true, 5);
    }

    void endsAPassThatGetsNowhere()
    {
        log().allow("the rest of the queue waits."_s);
        const int inFlight = 3; // beside the last one
        const int tries = at<int>("tries") + inFlight;
        FakeQueue queue(m_spool);
        const RecordOutcome failed { Failure::temporary({}, {}), at<bool>("isAnswered") };
        runPass(queue, failed, tries);
        QVERIFY(isDueIn(queue, 300s));
        queue.processIn(600s);
        QVERIFY(isDueIn(queue, 300s));
        queue.processIn(60s);
        QVERIFY(isDueIn(queue, 60s));

        // The next pass tries the others first.
        runPass(queue, failed, 2 * tries);
        QCOMPARE(queue.sent.removeDuplicates(), 0);
        runPass(queue, { {}, true }, 20);
        QCOMPARE(queue.sent.size(), 20);
        QCOMPARE(queue.sent.removeDuplicates(), 0);
        QVERIFY(isDueIn(queue, 300s));
    }

    void triesForeignFilesOnce()
    {
        FakeQueue queue(m_spool);
        queue.areForeign = true;
        runPass(queue, {}, 0);
        QCOMPARE(queue.sent.size(), 20); // they do not end the pass
        queue.areForeign = false;
        const QString record = m_spool.create("record");
        runPass(queue, { {}, true }, 21);
        QCOMPARE(queue.sent.last(), record);
    }

    void sendsNothingWhileAPersonWaits()
    {
        FakeQueue queue(m_spool);
        queue.process();
        QTRY_COMPARE(queue.sent.size(), 4);
        queue.isBusy = true;
        queue.endResend(queue.sent.takeFirst(), { {}, true });
        QCoreApplication::processEvents();
        QCOMPARE(queue.sent.size(), 3);
        queue.process(); // deferred
        QVERIFY(isDueIn(queue, 10s));
        queue.isBusy = false;
        Q_EMIT queue.freshChanged();
        QTRY_COMPARE(queue.sent.size(), 4);
    }

    void keepsBooks()
    {
        QueueStatus status;
        QueueLedger ledger(m_spool);
        connect(&ledger, &QueueLedger::changed, this,
                [&status](const QueueStatus &changed) { status = changed; });
        ledger.recount();
        QTRY_COMPARE(status.waiting.value_or(0), 20);
        const QString oldest = QDir(m_folder->path()).entryList(QDir::Files).first();
        QCOMPARE(status.oldest, Spool::timeOf(oldest));
        (void)m_spool.create("untold");
        const QString record = m_spool.create("record");
        ledger.onSaved(record);
        RecordOutcome refused { Failure::temporary({}, {}), true, 404, "HTTP 404"_s };
        ledger.onFailed(record, refused);
        refused.status = 503;
        ledger.onFailed(record, refused);
        QTRY_COMPARE(*status.waiting, 21); // without a look into the folder
        QCOMPARE(status.refused, 1);
        QCOMPARE(status.failed.value(0).tries, 2);

        QVERIFY(!Spool::remove(m_folder->filePath(oldest)));
        ledger.onGone(oldest);
        ledger.onGone(record);
        ledger.onAccepted();
        QTRY_COMPARE(status.sent, 1);
        QCOMPARE(*status.waiting, 21); // with one
        QVERIFY(status.oldest >= Spool::timeOf(oldest));
        QVERIFY(status.failed.isEmpty());
        QVERIFY(!Spool::timeOf("README.txt"_s).isValid());
    }

    void backsOff()
    {
        RecordBackOff backOff;
        for (const auto wait :
             { 60s, 120s, 240s, 480s, 960s, 1920s, 3840s, 7680s, 15360s, 21600s }) {
            backOff.postpone("a"_s);
            QVERIFY(!backOff.isDue("a"_s));
            QCOMPARE(std::chrono::round<std::chrono::seconds>(*backOff.untilNextDue()), wait);
        }
        backOff.postpone("b"_s);
        backOff.forgetGone();
        QVERIFY(*backOff.untilNextDue() <= 60s);
        backOff.forget("b"_s);
        QVERIFY(*backOff.untilNextDue() > 60s);
    }

private:
    /** Ends each record of a pass with @p outcome, until @p tries records were sent in all. */
    static void runPass(FakeQueue &queue, const RecordOutcome &outcome, int tries)
    {
        QSignalSpy finished(&queue, &RecordQueue::passFinished);
        int ended = queue.sent.size();
        queue.process();
        while (ended < tries) {
            QTRY_COMPARE(queue.sent.size(), std::min(ended + 4, tries)); // as many as may fly
            queue.endResend(queue.sent.at(ended++), outcome);
        }
        QTRY_COMPARE(finished.count(), 1);
    }

    static bool isDueIn(const FakeQueue &queue, std::chrono::seconds delay)
    {
        const auto *timer = queue.findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
        return timer->isActive() && timer->intervalAsDuration() == delay;
    }

    std::optional<QTemporaryDir> m_folder;
    Spool m_spool { { "LB_TEST_SPOOL_DIR", "spoolDir"_s, "spool/test"_s } };
};

static RegisterTest<TestRecordQueue> registerRecordQueue;

#include "tst_recordqueue.moc"
