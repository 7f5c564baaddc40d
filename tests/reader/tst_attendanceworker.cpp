// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/attendancethread.h"
#include "attendance/attendancerequest.h"
#include "net/accesstoken.h"
#include "presence/tallyxlogentity.h"
#include "reader/attendanceworker.h"
#include "simulator/virtualreader.h"
#include "support/crashdisk.h"
#include "support/notices.h"
#include "support/testcase.h"
#include "support/workerrunner.h"

#include <QScopeGuard>
#include <QTemporaryDir>

#include <optional>

using namespace simulator;
using namespace std::chrono_literals;

class TestAttendanceWorker : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        log().allow("Ignoring transponder ID with unusual length \"\""_s); // between CR and LF
        log().allow("Failed to load name cache: failed to open"_s);
        m_folder.emplace();
        services();
        LBAPI::instance();
        settings::set("tallyxMode"_s, 0);
        settings::set("tallyxSpoolDir"_s, m_folder->filePath("presence"_s));
        settings::set("attendanceSpoolDir"_s, m_folder->filePath("spool"_s));
        settings::set("attendanceNameCacheFile"_s, m_folder->filePath("names"_s));
        QVERIFY2(m_reader.isPlugged() || m_reader.plug(), qPrintable(m_reader.errorString()));
    }

    void greetsByNameAndShowsTheResponse()
    {
        const auto running = run();
        m_reader.tap("0A1B2C3D");
        QTRY_COMPARE(shownNotice(), "0 Erika Beispiel"_s);
        QVERIFY(notice()->message().startsWith("Ihre Anwesenheit"_s));
        const auto record = services().attendanceRecords().value(0);
        QCOMPARE(record.transponderId, quint64(0x0A1B2C3D));
        QCOMPARE(record.locationId, 1);
        QVERIFY(!record.lagMs);
        QTRY_COMPARE(attendanceSpool().count(), 0);

        services().setFault(Route::Attendance, Fault::Hang);
        m_reader.tap("0a1b2c3d"); // the same card
        QTRY_COMPARE(shownNotice(), "4 Erika Beispiel"_s);
        QCOMPARE(attendanceSpool().count(), 1);
        services().clearFaults();
        QTRY_COMPARE(shownNotice(), "0 Erika Beispiel"_s);
    }

    void tellsOfFailures_data()
    {
        columns<Fault, QString, QString, bool>("fault", "logged", "shown", "isKept");
        row("server error", Fault::ServerError, "Network error: 401 ",
            "The service is out of order (error 500).", true);
        row("not admitted", Fault::WrongCredentials, "Network error: 204 ",
            "The service does not admit this device (error 401).", true);
        row("redirect", Fault::Redirect, "Network error: 299 unexpected HTTP status 302",
            "The service refers to another address (error 302).", true);
        row("never answered", Fault::Hang, "Network error: 5 Operation canceled",
            "The service does not answer.", true);
        row("never answered, record gone", Fault::Hang, "Network error: 5 Operation canceled",
            "The service does not answer.", false);
        row("captive portal", Fault::CaptivePortal, "Invalid server response (1).",
            "Invalid server response (1).", false);
    }

    void tellsOfFailures()
    {
        const auto fault = at<Fault>("fault");
        const bool isKept = at<bool>("isKept");
        log().expect("Error logging attendance: false \""_s + at("logged"));
        log().allow("Network error"_s);
        log().allow("AttendanceResponse(): "_s);
        services().setFault(Route::Attendance, fault);
        const auto running = run({ fault == Fault::Hang ? 1000ms : 5000ms, 5s, 1024 * 1024 });
        m_reader.tap("0A1B2C3D");
        if (!isKept && fault == Fault::Hang) {
            QTRY_COMPARE(services().requestCount(Route::Attendance), 1);
            QVERIFY(QDir(attendanceSpool().folder()).removeRecursively());
        }
        QTRY_COMPARE(shownNotice(), isKept ? "2 Attendance"_s : "3 Attendance"_s);
        const QString message = notice()->message();
        QVERIFY(message.startsWith(isKept ? "A temporary error occurred."_s
                                          : "Failed to log your attendance."_s));
        QVERIFY2(message.endsWith("\n\n"_s + at("shown")), qPrintable(message));
        QCOMPARE(notice()->timeout(), isKept ? 20000U : 60000U);
        QTRY_COMPARE(attendanceSpool().count(), isKept ? 1 : 0);
        if (!isKept)
            return;

        services().clearFaults();
        const int before = services().attendanceRecords().size();
        running->post("processQueue");
        QTRY_COMPARE(attendanceSpool().count(), 0);
        QCOMPARE(services().attendanceRecords().size(), before + 1);
        QVERIFY(services().attendanceRecords().constLast().lagMs);
        QCOMPARE(notice()->message(), message);
    }

    void leavesForeignFilesInTheSpool()
    {
        const QString foreign = attendanceSpool().create("no record");
        log().expect("Not an attendance record: \"%1\""_s.arg(foreign));
        log().expect("Error logging attendance: true \"invalid attendance request data\""_s);
        const auto running = run();
        running->post("processQueue");
        QTRY_VERIFY(log().complaints().isEmpty());
        QVERIFY(QFile::exists(foreign));
        QCOMPARE(shownNotice(), ""_s);
    }

    void sendsPresenceRecordsWithTheFirstToken()
    {
        TallyxLogEntity(0x0A1B2C3D, TallyxLogEntity::IN).save();
        log().allow("Network error"_s); // the token is not valid
        accesstoken::publish({});
        const auto running = run();
        accesstoken::publish("first"_s);
        LBAPI::instance()->setAccessToken("first"_s);
        QTRY_COMPARE(services().requestCount(Route::PresenceBooking), 1);
        accesstoken::publish({});
        LBAPI::instance()->setAccessToken({});
    }

    void leavesNoNoticeBehind()
    {
        services().setFault(Route::Attendance, Fault::Hang);
        log().allow("Network error"_s);
        {
            const auto running = run();
            m_reader.tap("0A1B2C3D");
            QTRY_COMPARE(shownNotice(), "4 Attendance"_s);
            notice()->remove(); // the record goes its way without it
            services().clearFaults();
            QTRY_COMPARE(attendanceSpool().count(), 0);
            QCOMPARE(notices().length(), 0);

            services().setFault(Route::Attendance, Fault::Hang);
            m_reader.tap("0A1B2C3E");
            QTRY_COMPARE(shownNotice(), "4 Attendance"_s);
        }
        QTRY_COMPARE(notices().length(), 0);
        QCOMPARE(attendanceSpool().count(), 1);
    }

    void handsTheNextCardToTheView()
    {
        const auto running = run();
        LBAPI *api = LBAPI::instance();
        QString heard;
        connect(api, &LBAPI::transponderScanned, this, [&](const QString &tid) {
            heard += tid + (api->scanTransponder() ? " before the scan ended"_s : ""_s);
        });
        api->setScanTransponder(true);
        m_reader.send("0a1B2c3D\r0A1B2C3E\r"); // the second is an ordinary card
        QTRY_COMPARE(services().attendanceRecords().size(), 1);
        QCOMPARE(services().attendanceRecords().constFirst().transponderId, quint64(0x0A1B2C3E));
        QTRY_COMPARE(heard, "0a1B2c3D"_s);
    }

    void reportsAnInvalidCard()
    {
        auto running = run();
        log().expect("Ignoring transponder ID with unusual length \"0A1B2C3\""_s);
        log().expect("Ignoring transponder ID with unusual length \"0A1B2C3D4\""_s);
        log().expect("Failed to parse transponder ID \"0x1A2B3C\""_s);
        log().expect("Error logging attendance: false \"Failed to parse transponder ID. :O\""_s);
        // The worker takes 16 bytes at a time: the last two lines end in the same delivery.
        m_reader.send("\r\r\r\r\r\r0A1B2C3\r0A1B2C3D4\r0x1A2B3C\r0A1B2C3D\r");
        QTRY_COMPARE(shownNotice(), "3 Error"_s);
        QVERIFY(notice()->message().endsWith("\n\nFailed to parse transponder ID. :O"_s));
        m_reader.send("\n"); // the good line waited for it
        QTRY_COMPARE(services().attendanceRecords().size(), 1);
        QTRY_COMPARE(attendanceSpool().count(), 0);

        log().allow("Failed to parse transponder ID"_s);
        log().allow("Error logging attendance: false"_s);
        QVERIFY(shownNotice() != "3 Error"_s);
        m_reader.send("\r\r\r\r\r\r\r\r0x1A2B3C\r0A1B2C3D\r");
        QTRY_COMPARE(shownNotice(), "3 Error"_s); // the same one, on top again
        running.reset();
        QCOMPARE(attendanceSpool().count(), 1); // nothing came behind it, but it is not lost
    }

    void findsTheReaderAgain()
    {
        m_reader.unplug();
        m_reader.setStaleBytes("0A1B2C3D\r\n");
        QVERIFY(m_reader.plug());
        log().expect("Serial port had buffered data which was discarded: \"0A1B2C3D"_s);
        const auto running = run();
        QSignalSpy states(running->worker, &AttendanceWorker::readerStateChanged);
        log().expect("No serial port found."_s);
        log().expect("Serial port error: QSerialPort::ResourceError"_s);
        m_reader.unplug();
        QTRY_VERIFY(log().lines().contains("Serial port about to close."_s));
        QTRY_COMPARE(shownNotice(), "3 Serial port error"_s);
        QCOMPARE(notice()->message(),
                 "The card reader has been disconnected.\nRetrying in 1 seconds."_s);
        QCOMPARE(notice()->timeout(), 5000U);
        QTRY_COMPARE(notices().length(), 2); // a second later
        QCOMPARE(notice()->message(), "No serial port found."_s);
        QCOMPARE(notice()->timeout(), 30000U);
        running->post("initSerialPort"); // nothing new, nothing to tell
        QVERIFY(m_reader.plug());
        running->post("initSerialPort");
        QTRY_COMPARE(states, (QList<QVariantList> { { false }, { true } }));
        m_reader.tap("0A1B2C3D");
        QTRY_COMPARE(services().attendanceRecords().size(), 1);
    }

    void stopsForGoodWhenARecordCanNotBeRemoved()
    {
        CrashDisk disk;
        disk.fail(CrashDisk::Unlink);
        services().setFault(Route::Attendance, Fault::Hang);
        QVERIFY(startAttendanceThread());
        const auto stop = qScopeGuard(stopAttendanceThread);
        auto *limit = LBAPI::instance()->cardReadiness()->findChild<QTimer *>();
        QTRY_VERIFY(limit->isActive());
        QMetaObject::invokeMethod(limit, "timeout");
        QVERIFY(LBAPI::instance()->cardWarning().startsWith("No card reader"_s));
        QTRY_COMPARE(LBAPI::instance()->cardWarning(), ""_s);
        m_reader.tap("0A1B2C3D");
        QTRY_COMPARE(services().requestCount(Route::Attendance), 1);
        log().expect("Failed to remove a sent attendance record"_s);
        services().clearFaults();
        QTRY_COMPARE(shownNotice(), "3 FATAL ERROR"_s);
        QVERIFY(
            notice()->message().endsWith("\n\nThe storage of this device cannot be written to."_s));
        QVERIFY(notice()->timeout() == 0 && notice()->isClosable() && !notice()->isLasting());
        QTRY_VERIFY(LBAPI::instance()->cardWarning().startsWith("Cards are no longer"_s));
        stopAttendanceThread(); // waits
        log().expect("Logging has been stopped"_s);
        QVERIFY(!startAttendanceThread());
        QCOMPARE(notices().length(), 2);
    }

private:
    /** Runs a worker and waits until its reader is connected. */
    static std::unique_ptr<WorkerRunner<AttendanceWorker>> run(const RequestLimits &limits = {})
    {
        auto *worker = new AttendanceWorker(limits);
        QSignalSpy connected(worker, &AttendanceWorker::readerStateChanged);
        auto running = std::make_unique<WorkerRunner<AttendanceWorker>>(worker);
        [&connected] { QTRY_COMPARE(connected.count(), 1); }();
        return running;
    }

    std::optional<QTemporaryDir> m_folder;
    SerialBus m_bus;
    VirtualReader m_reader { m_bus };
};

static RegisterTest<TestAttendanceWorker> registerAttendanceWorker;

#include "tst_attendanceworker.moc"
