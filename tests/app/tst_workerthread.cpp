// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/workerthread.h"
#include "base/failure.h"
#include "support/testcase.h"

#include <QThread>

#include <atomic>
#include <unistd.h>

/** A worker that blocks forever, in init(), in a slot that catches everything, or when deleted. */
class BlockedWorker : public QObject
{
    Q_OBJECT

public:
    enum Place { Init, Slot, Destructor };

    explicit BlockedWorker(Place place)
        : m_place(place)
    {
    }
    ~BlockedWorker() override
    {
        while (m_place == Destructor && !isReleased)
            usleep(1000);
    }

    std::atomic<bool> isBlocked = false;
    inline static std::atomic<bool> isReleased = false;

private Q_SLOTS:
    void init()
    {
        if (m_place == Slot)
            QMetaObject::invokeMethod(this, "catchingSlot", Qt::QueuedConnection);
        else if (m_place == Init)
            block();
        else
            isBlocked = true;
    }

    void catchingSlot()
    {
        if (catchFailure([this] { block(); }))
            qFatal("the end of a thread is no failure of ours");
    }

private:
    void block()
    {
        isBlocked = true;
        while (true)
            pause();
    }

    const Place m_place;
};

class TestWorkerThread : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void endsABlockedWorker_data()
    {
        columns<int>("place");
        row("in init()", int(BlockedWorker::Init));
        row("in a slot that catches everything", int(BlockedWorker::Slot));
        row("in its destructor", int(BlockedWorker::Destructor)); // where nothing ends it
    }

    void endsABlockedWorker()
    {
        BlockedWorker::isReleased = false;
        QThread thread;
        const auto place = BlockedWorker::Place(at<int>("place"));
        auto *worker = new BlockedWorker(place);
        startWorkerThread(thread, worker);
        QTRY_VERIFY(worker->isBlocked);
        log().expect("terminating"_s);
        log().allow("Qt has caught an exception"_s); // Qt sees the end of the thread as one
        const bool isLeftBehind = place == BlockedWorker::Destructor;
        log().expect(isLeftBehind ? "left behind"_s : "stopped"_s);
        const ThreadEnd end
            = stopWorkerThread(thread, { "stopping", "terminating", "stopped", "left behind", "" });
        QCOMPARE(end, isLeftBehind ? ThreadEnd::LeftBehind : ThreadEnd::Ended);
        QCOMPARE(thread.wait(0), !isLeftBehind);
        BlockedWorker::isReleased = true;
        QVERIFY(thread.wait(5000));
    }
};

static RegisterTest<TestWorkerThread> registerWorkerThread;

#include "tst_workerthread.moc"
