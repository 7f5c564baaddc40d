// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/workerthread.h"
#include "base/failure.h"
#include "support/testcase.h"

#include <QThread>

#include <atomic>
#include <unistd.h>

/** A worker that blocks forever, in init() or in a slot that catches everything. */
class BlockedWorker : public QObject
{
    Q_OBJECT

public:
    explicit BlockedWorker(bool blocksInSlot)
        : m_blocksInSlot(blocksInSlot)
    {
    }

    std::atomic<bool> isBlocked = false;

private Q_SLOTS:
    void init()
    {
        if (m_blocksInSlot)
            QMetaObject::invokeMethod(this, "catchingSlot", Qt::QueuedConnection);
        else
            block();
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

    const bool m_blocksInSlot;
};

class TestWorkerThread : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void endsABlockedWorker()
    {
        log().expect("terminating"_s);
        log().allow("Qt has caught an exception"_s); // Qt sees the end of the thread as one
        for (const bool blocksInSlot : { false, true }) {
            QThread thread;
            auto *worker = new BlockedWorker(blocksInSlot);
            startWorkerThread(thread, worker);
            QTRY_VERIFY(worker->isBlocked);
            const WorkerThreadTexts texts { "stopping", "terminating", "stopped", "left", "" };
            QCOMPARE(stopWorkerThread(thread, texts), ThreadEnd::Ended);
        }
        QCOMPARE(log().lines().filter("stopped"_s).size(), 2);
    }
};

static RegisterTest<TestWorkerThread> registerWorkerThread;

#include "tst_workerthread.moc"
