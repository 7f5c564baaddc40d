// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "net/accesstoken.h"
#include "net/kcclientcredentials.h"
#include "net/xnetworkaccessmanager.h"
#include "presence/tallyxlogentity.h"
#include "presence/tallyxqueue.h"
#include "support/notices.h"
#include "support/testcase.h"

#include <QTemporaryDir>

#include <optional>

using namespace simulator;
using namespace std::chrono_literals;

class TestTallyxFlow : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        log().allow("Network error"_s);
        m_folder.emplace();
        services();
        settings::set("tallyxSpoolDir"_s, m_folder->path());
        settings::set("tallyxConfirmTimeout"_s, 30000);
        LBAPI::instance();
        m_manager.emplace();
        m_queue.emplace(*m_manager, RequestLimits { 1000ms, 5s, 1024 * 1024 });
        KCClientCredentials credentials(&*m_manager);
        QSignalSpy changed(&credentials, &KCClientCredentials::accessTokenChanged);
        credentials.grant();
        QVERIFY(changed.wait());
        accesstoken::publish(changed.constFirst().constFirst().toString());
    }

    void cleanup()
    {
        m_queue.reset();
        m_manager.reset();
        TestCase::cleanup();
    }

    void proposesWhatTheServiceSays_data()
    {
        columns<Fault, bool, int, QString>("status", "isPresent", "proposal", "shown");
        constexpr int none = -1;
        row("absent", Fault::None, false, 0, "");
        row("present", Fault::None, true, 1, "");
        row("wrong types", Fault::InvalidValue, false, none, "");
        row("server error", Fault::ServerError, false, none, " is out of order (error 500).");
        row("never answered", Fault::Hang, false, none, "The service does not answer.");
        row("closed", Fault::Refuse, false, none, "The service accepts no connection.");
        row("broken", Fault::BrokenJson, false, none, "The service gives an unreadable response.");
        row("a list", Fault::EmptyList, false, none, "The service gives an unreadable response.");
    }

    void proposesWhatTheServiceSays()
    {
        const auto status = at<Fault>("status");
        const int proposal = at<int>("proposal");
        const bool isRead = status == Fault::None || status == Fault::InvalidValue;
        if (!isRead)
            log().expect("Failed to query presence status:"_s);
        log().allow("Giving up request"_s);
        settings::set("tallyxGetStatusTimeout"_s, 1000);
        services().setPresent(card, at<bool>("isPresent"));
        services().setFault(Route::PresenceStatus, status);
        QVERIFY(asks());
        QCOMPARE(tallyxSpool().count(), 1);
        QCOMPARE(notice()->title(), proposal < 0 ? "Presence"_s : "Erika Beispiel"_s);
        QCOMPARE(notice()->message().startsWith("Failed to query your presence status."_s),
                 !isRead);
        QVERIFY(notice()->message().endsWith(at("shown")));
        QVERIFY(!notice()->isClosable() && !notice()->isTimeoutCancelable());
        QCOMPARE(notice()->buttons().size(), 2);
        for (int i = 0; i < 2; ++i) {
            const auto *button = notice()->buttons().at(i);
            QCOMPARE(button->text(), i == 0 ? "Arrive"_s : "Leave"_s);
            QCOMPARE(button->isHighlighted() && button->isFlashing(), i == proposal);
        }
        notice()->confirm();
        QTRY_COMPARE(services().presenceBookings().size(), 1);
        const auto booking = services().presenceBookings().constFirst();
        QCOMPARE(int(booking.type), proposal < 0 ? TallyxLogEntity::CONTINUOUS : 1 + proposal);
        QCOMPARE(booking.tid, qint64(card));
        QVERIFY(booking.transmissionDelay >= booking.logDelay);
    }

    void booksWhatThePersonChooses_data()
    {
        columns<Fault, QVector<int>, int>("status", "presses", "booked");
        using Presses = QVector<int>;
        row("other than proposed", Fault::None, Presses { 1 }, int(TallyxLogEntity::OUT));
        row("there and back", Fault::None, Presses { 1, 0, 0 }, int(TallyxLogEntity::IN));
        row("arrives by hand", Fault::ServerError, Presses { 0 }, int(TallyxLogEntity::IN));
    }

    void booksWhatThePersonChooses()
    {
        log().allow("Failed to query presence status:"_s);
        log().expect("onButtonClicked(): unhandled case"_s);
        services().setFault(Route::PresenceStatus, at<Fault>("status"));
        QVERIFY(asks());
        QSignalSpy restarts(notice(), &Notification::timeoutChanged);
        const auto presses = at<QVector<int>>("presses");
        for (const int press : presses)
            notice()->clickButton(press);
        notice()->clickButton(7); // no button of ours
        QCOMPARE(restarts.count(), presses.size()); // the whole time again with each press
        notice()->confirm();
        notice()->confirm();
        notice()->clickButton(1); // too late
        QTRY_COMPARE(notice()->type(), int(Notification::INFO));
        const int booked = at<int>("booked");
        QVERIFY(notice()->message().startsWith(
            booked == TallyxLogEntity::IN ? "Willkommen"_s : "Auf Wiedersehen"_s));
        QVERIFY(isOver() && !notice()->buttons().isEmpty());
        QTRY_COMPARE(tallyxSpool().count(), 0);
        QCOMPARE(services().presenceBookings().size(), 1);
        QCOMPARE(int(services().presenceBookings().constFirst().type), booked);
    }

    void leavesAFailedBookingToTheQueue_data()
    {
        columns<Fault, QString, QString>("booking", "logged", "shown");
        const QString network = "Network error: "_s;
        const QString unread = "Error parsing response."_s;
        const QString unconfirmed = "The service has not confirmed the booking."_s;
        row("no token", Fault::None, noToken, noToken);
        row("server error", Fault::ServerError, network, "is out of order (error 500).");
        row("never answered", Fault::Hang, network, "The service does not answer.");
        row("a list", Fault::EmptyList, unread, unconfirmed);
        row("an error", Fault::ErrorObject, unread, unconfirmed);
        row("a redirect", Fault::Redirect, network, "refers to another address (error 302).");
    }

    void leavesAFailedBookingToTheQueue()
    {
        const bool hasToken = at("logged") != noToken;
        const QString token = accesstoken::current();
        accesstoken::publish(hasToken ? token : QString());
        log().expect("Error logging presence: \""_s + at("logged"));
        services().setPresent(card, true);
        services().setFault(Route::PresenceBooking, at<Fault>("booking"));
        QVERIFY(asks());
        notice()->confirm();
        QTRY_COMPARE(notice()->type(), int(Notification::ERR));
        QVERIFY(notice()->message().startsWith("A temporary error occurred."_s));
        QVERIFY(notice()->message().endsWith(at("shown")));
        QVERIFY(isOver() && notice()->buttons().isEmpty());
        QCOMPARE(tallyxSpool().count(), 1);

        services().clearFaults();
        accesstoken::publish(token);
        const int before = services().presenceBookings().size();
        m_queue->process();
        QTRY_COMPARE(tallyxSpool().count(), 0);
        QCOMPARE(services().presenceBookings().size(), before + 1);
        QCOMPARE(int(services().presenceBookings().constLast().type), int(TallyxLogEntity::OUT));
    }

    void booksByItselfWhenNobodyPresses()
    {
        settings::set("tallyxConfirmTimeout"_s, 1000); // raised to 3000
        services().setFault(Route::PresenceStatus, Fault::Hang);
        m_queue->begin(card);
        QTRY_COMPARE(services().requestCount(Route::PresenceStatus), 1);
        QCOMPARE(notice()->type(), int(Notification::LOADING));
        services().clearFaults();
        QTRY_COMPARE(notice()->timeout(), 3000U);
        QTRY_COMPARE(services().presenceBookings().size(), 1);
        QVERIFY(services().presenceBookings().constFirst().logDelay >= 3000);
    }

    void keepsSeveralPeopleApart()
    {
        constexpr int people = 5;
        for (int i = 0; i < people; ++i)
            m_queue->begin(i < 3 ? card + i : card); // one card three times
        QTRY_COMPARE(notices().length(), people);
        const auto questions = LBAPI::instance()->findChildren<Notification *>();
        for (const Notification *question : questions)
            QTRY_COMPARE(question->type(), int(Notification::CONFIRMATION));
        QCOMPARE(tallyxSpool().count(), people);
        m_queue->process(); // sends nothing of what is in their hands
        QSignalSpy passed(&*m_queue, &TallyxQueue::passFinished);
        QVERIFY(passed.wait());
        QCOMPARE(services().requestCount(Route::PresenceBooking), 0);
        questions.at(2)->clickButton(1);
        for (Notification *question : questions)
            question->confirm();
        QTRY_COMPARE(services().presenceBookings().size(), people);
        QTRY_COMPARE(tallyxSpool().count(), 0);
    }

    void leavesARecordWithoutAQuestionToTheQueue()
    {
        QVERIFY(asks());
        log().expect("Presence question is gone, leaving the record to the queue."_s);
        auto *timer = m_queue->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
        notice()->remove();
        QTRY_VERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 60000);
        m_queue->process();
        QTRY_COMPARE(services().presenceBookings().size(), 1);

        QVERIFY(asks());
        m_queue.reset();
        QTRY_COMPARE(notices().length(), 0);
        QCOMPARE(tallyxSpool().count(), 1);
    }

    void booksThoughTheSpoolIsGone()
    {
        QVERIFY(asks());
        QVERIFY(QDir(m_folder->path()).removeRecursively());
        notice()->confirm();
        QTRY_COMPARE(services().presenceBookings().size(), 1);
        QTRY_COMPARE(tallyxSpool().count(), 0);
    }

private:
    const QString noToken = "Authentication unavailable."_s;
    static constexpr quint64 card = 0x0A1B2C3D;

    /** Reads the card and waits for the question. */
    bool asks()
    {
        m_queue->begin(card);
        return QTest::qWaitFor([] { return notice()->type() == Notification::CONFIRMATION; });
    }

    /** True if the newest notification only waits to be read. */
    static bool isOver()
    {
        return notice()->isClosable() && notice()->timeout() == 20000 && !notice()->isConfirmable()
            && notice()->defaultAction() == Notification::CLOSE;
    }

    std::optional<QTemporaryDir> m_folder;
    std::optional<XNetworkAccessManager> m_manager;
    std::optional<TallyxQueue> m_queue;
};

static RegisterTest<TestTallyxFlow> registerTallyxFlow;

#include "tst_tallyxflow.moc"
