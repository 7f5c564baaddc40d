// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "api/lbapi.h"
#include "net/accesstoken.h"
#include "net/kcclientcredentials.h"
#include "net/xnetworkaccessmanager.h"
#include "presence/tallyxlogentity.h"
#include "presence/tallyxqueue.h"
#include "support/fulldisk.h"
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
        m_folder.emplace();
        services();
        settings::set("tallyxSpoolDir"_s, m_folder->path());
        settings::set("tallyxConfirmTimeout"_s, 30000);
        LBAPI::instance();
        m_manager.emplace();
        m_queue.emplace(*m_manager, RequestLimits { 300ms, 5s, 1024 * 1024 });
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

    /** What the service says of the person, what the person presses, what becomes of it. */
    void books_data()
    {
        columns<Fault, bool, QString, QString, Fault, QString>("status", "isPresent", "asked",
                                                               "presses", "booking", "outcome");
        const QString in = "Erika Beispiel [Arrive] Leave"_s;
        const QString out = "Erika Beispiel Arrive [Leave]"_s;
        const QString open = "Presence Arrive Leave"_s;
        const auto flow = [](const char *tag, Fault status, bool isPresent, const QString &asked,
                             const char *presses, Fault booking, const char *outcome) {
            row(tag, status, isPresent, asked, presses, booking, outcome);
        };
        constexpr Fault ok = Fault::None;
        flow("arrives", ok, false, in, "c", ok, "IN INFO Willkommen");
        flow("leaves", ok, true, out, "c", ok, "OUT INFO Auf Wiedersehen");
        flow("chooses otherwise", ok, false, in, "1c", ok, "OUT INFO Auf Wiedersehen");
        flow("chooses there and back", ok, false, in, "10c", ok, "IN INFO Willkommen");
        flow("confirms twice", ok, false, in, "cc1", ok, "IN INFO Willkommen");
        flow("no button of ours", ok, false, in, "7c", ok, "IN INFO Willkommen");
        flow("status fails", Fault::ServerError, false, open, "0c", ok, "IN INFO Willkommen");
        flow("status refused", Fault::Refuse, false, open, "1c", ok, "OUT INFO");
        flow("status never comes", Fault::Hang, false, open, "1c", ok, "OUT INFO");
        flow("status is broken", Fault::BrokenJson, false, open, "1c", ok, "OUT INFO");
        flow("status is a list", Fault::EmptyList, false, open, "1c", ok, "OUT INFO");
        flow("status of wrong types", Fault::InvalidValue, false, open, "c", ok, "CONTINUOUS INFO");
        flow("no choice, no status", Fault::CaptivePortal, false, open, "c", ok, "CONTINUOUS INFO");
        flow("booking fails", ok, false, in, "c", Fault::ServerError, "IN ERR A temporary error");
        flow("booking never answered", ok, false, in, "c", Fault::Hang, "IN ERR A temporary error");
        flow("booking dropped", ok, true, out, "c", Fault::Drop, "OUT ERR A temporary error");
        flow("booking answered by a list", ok, true, out, "c", Fault::EmptyList,
             "OUT ERR A temporary error");
        flow("booking answered by a page", ok, true, out, "c", Fault::CaptivePortal,
             "OUT ERR A temporary error");
    }

    void books()
    {
        log().allow("Network error"_s);
        log().allow("Failed to query presence status:"_s);
        log().allow("onButtonClicked(): unhandled case"_s);
        log().allow("Giving up request"_s);
        services().setPresent(card, at<bool>("isPresent"));
        services().setFault(Route::PresenceStatus, at<Fault>("status"));
        services().setFault(Route::PresenceBooking, at<Fault>("booking"));
        settings::set("tallyxGetStatusTimeout"_s, 1000);
        m_queue->begin(card);
        QCOMPARE(tallyxSpool().count(), 1);
        QTRY_COMPARE(notice()->type(), int(Notification::CONFIRMATION));
        QCOMPARE(asked(), at("asked"));
        QVERIFY(!notice()->isClosable() && !notice()->isTimeoutCancelable());
        const bool isUnknown = at("asked").startsWith("Presence"_s) && at("presses") != "c"_s;
        QCOMPARE(notice()->message().startsWith("Failed to query your presence status."_s),
                 isUnknown || at<Fault>("status") == Fault::CaptivePortal);

        for (const QChar press : at("presses")) {
            if (press == QLatin1Char('c'))
                notice()->confirm();
            else
                notice()->clickButton(press.digitValue());
        }
        const QStringList outcome = at("outcome").split(QLatin1Char(' '));
        const bool isBooked = outcome.at(1) == "INFO"_s;
        if (!isBooked)
            log().expect("Error logging presence:"_s);
        QTRY_COMPARE(notice()->type(), int(isBooked ? Notification::INFO : Notification::ERR));
        const QString message = outcome.mid(2).join(QLatin1Char(' '));
        QVERIFY2(notice()->message().startsWith(message), qPrintable(notice()->message()));
        QVERIFY(notice()->isClosable() && notice()->timeout() == 20000 && !notice()->isConfirmable()
                && notice()->defaultAction() == Notification::CLOSE);
        QCOMPARE(notice()->buttons().isEmpty(), !isBooked);
        QTRY_COMPARE(tallyxSpool().count(), isBooked ? 0 : 1);

        if (!isBooked) { // the queue has it now
            services().clearFaults();
            const int before = services().presenceBookings().size();
            m_queue->startPass();
            QTRY_COMPARE(tallyxSpool().count(), 0);
            QCOMPARE(services().presenceBookings().size(), before + 1);
        }
        const auto booking = services().presenceBookings().constLast();
        QCOMPARE(QString::fromLatin1(
                     QMetaEnum::fromType<TallyxLogEntity::Type>().valueToKey(int(booking.type))),
                 outcome.constFirst());
        QCOMPARE(booking.tid, qint64(card));
        QVERIFY(booking.transmissionDelay >= booking.logDelay);
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

    void givesTheWholeTimeAgainWithEachPress()
    {
        m_queue->begin(card);
        QTRY_COMPARE(notice()->type(), int(Notification::CONFIRMATION));
        QSignalSpy restarts(notice(), &Notification::timeoutChanged);
        notice()->clickButton(0);
        QTRY_COMPARE(restarts.count(), 1);
        notice()->clickButton(0);
        QTRY_COMPARE(restarts.count(), 2);
    }

    void keepsSeveralPeopleApart()
    {
        constexpr int people = 5;
        for (int i = 0; i < people; ++i)
            m_queue->begin(i < 3 ? card + i : card); // one card three times
        QTRY_COMPARE(model().length(), people);
        const auto isAsked = [] {
            for (int i = 0; i < people; ++i) {
                if (notice(i)->type() != Notification::CONFIRMATION)
                    return false;
            }
            return true;
        };
        QTRY_VERIFY(isAsked());
        QCOMPARE(tallyxSpool().count(), people);
        m_queue->startPass(); // sends nothing of what is in their hands
        QSignalSpy passed(&*m_queue, &TallyxQueue::passFinished);
        QVERIFY(passed.wait());
        QCOMPARE(services().requestCount(Route::PresenceBooking), 0);
        notice(2)->clickButton(1);
        for (int i = 0; i < people; ++i)
            notice(i)->confirm();
        QTRY_COMPARE(services().presenceBookings().size(), people);
        QTRY_COMPARE(tallyxSpool().count(), 0);
    }

    void leavesNoQuestionThatNobodyHears()
    {
        m_queue->begin(card);
        QTRY_COMPARE(notice()->type(), int(Notification::CONFIRMATION));
        m_queue.reset();
        QTRY_COMPARE(model().length(), 0);
        QCOMPARE(tallyxSpool().count(), 1);
    }

    void leavesTheRecordOfALostQuestionToTheQueue()
    {
        m_queue->begin(card);
        QTRY_COMPARE(notice()->type(), int(Notification::CONFIRMATION));
        log().expect("Presence question is gone, leaving the record to the queue."_s);
        int retries = 0;
        connect(&*m_queue, &TallyxQueue::retryWanted, &*m_queue, [&retries] { ++retries; });
        notice()->remove();
        QTRY_COMPARE(retries, 1);
        m_queue->startPass();
        QTRY_COMPARE(services().presenceBookings().size(), 1);
    }

    void waitsForAToken()
    {
        const QString token = accesstoken::current();
        accesstoken::publish({});
        log().expect("Error logging presence: \"Authentication unavailable.\""_s);
        m_queue->begin(card);
        QTRY_COMPARE(notice()->type(), int(Notification::CONFIRMATION));
        notice()->confirm();
        QTRY_COMPARE(notice()->type(), int(Notification::ERR));
        QVERIFY(notice()->message().endsWith("\n\nAuthentication unavailable."_s));
        m_queue->startPass();
        QCOMPARE(services().requestCount(Route::PresenceBooking), 0);
        accesstoken::publish(token);
        m_queue->startPass();
        QTRY_COMPARE(services().presenceBookings().size(), 1);
        QTRY_COMPARE(tallyxSpool().count(), 0);
    }

    void sendsPeopleToTheStaffWhenNothingCanBeKept()
    {
        log().expect("Error logging presence: \"failed to write to file"_s);
        const FullDisk full(10);
        m_queue->begin(card);
        QTRY_COMPARE(notice()->type(), int(Notification::ERR));
        QVERIFY(notice()->message().startsWith("Failed to log your presence."_s));
        QCOMPARE(notice()->timeout(), 60000U);
    }

    void followsTheLastChoiceThoughTheDiskIsFull_data()
    {
        columns<Fault, int, QString>("booking", "bookings", "message");
        row("booked", Fault::None, 1, "Auf Wiedersehen");
        row("not booked", Fault::ServerError, 0, "Failed to log your presence.");
    }

    void followsTheLastChoiceThoughTheDiskIsFull()
    {
        services().setFault(Route::PresenceBooking, at<Fault>("booking"));
        m_queue->begin(card);
        QTRY_COMPARE(notice()->type(), int(Notification::CONFIRMATION));
        log().expect("Failed to save a presence record again: failed to write to file"_s);
        log().allow("Network error"_s);
        log().allow("Error logging presence:"_s);
        {
            const FullDisk full(10);
            notice()->clickButton(1);
            notice()->confirm();
        }
        QTRY_VERIFY(notice()->isClosable());
        QVERIFY2(notice()->message().startsWith(at("message")), qPrintable(notice()->message()));
        // What says otherwise must not be booked later.
        QTRY_COMPARE(tallyxSpool().count(), 0);
        const auto bookings = services().presenceBookings();
        QCOMPARE(bookings.size(), at<int>("bookings"));
        QVERIFY(bookings.isEmpty() || int(bookings.constFirst().type) == TallyxLogEntity::OUT);
    }

    void booksThoughTheSpoolIsGone()
    {
        m_queue->begin(card);
        QTRY_COMPARE(notice()->type(), int(Notification::CONFIRMATION));
        QVERIFY(QDir(m_folder->path()).removeRecursively());
        notice()->confirm();
        QTRY_COMPARE(services().presenceBookings().size(), 1);
        QTRY_COMPARE(tallyxSpool().count(), 0);
    }

    void stopsForGoodWhenARecordCanNotBeRemoved()
    {
        m_queue->begin(card);
        QTRY_COMPARE(notice()->type(), int(Notification::CONFIRMATION));
        services().setFault(Route::PresenceBooking, Fault::Hang);
        notice()->confirm();
        QTRY_COMPARE(services().requestCount(Route::PresenceBooking), 1);
        const QString file
            = m_folder->filePath(QDir(m_folder->path()).entryList(QDir::Files).value(0));
        QVERIFY(QFile::remove(file) && QDir().mkpath(file)); // a folder can not be removed so
        log().expect("FATAL ERROR"_s);
        QSignalSpy stopped(&*m_queue, &TallyxQueue::fatalStop);
        services().clearFaults();
        QTRY_COMPARE(stopped.count(), 1);
        QTRY_COMPARE(model().length(), 2);
        QVERIFY(notice()->message().contains(file) && notice()->timeout() == 0);
    }

private:
    static constexpr quint64 card = 0x0A1B2C3D;

    static NotificationsModel &model() { return *LBAPI::instance()->notifications(); }

    /** A notification, the newest first. */
    static Notification *notice(int row = 0)
    {
        QCoreApplication::sendPostedEvents(LBAPI::instance());
        return model()
            .data(model().index(row), NotificationsModel::DataRole)
            .value<Notification *>();
    }

    /** Title and buttons; in brackets what is highlighted and flashes. */
    static QString asked()
    {
        QString text = notice()->title();
        for (const NotificationButton *button : notice()->buttons()) {
            const bool isMarked = button->isHighlighted() && button->isFlashing();
            text += (isMarked ? " [%1]"_s : " %1"_s).arg(button->text());
        }
        return text;
    }

    std::optional<QTemporaryDir> m_folder;
    std::optional<XNetworkAccessManager> m_manager;
    std::optional<TallyxQueue> m_queue;
};

static RegisterTest<TestTallyxFlow> registerTallyxFlow;

#include "tst_tallyxflow.moc"
