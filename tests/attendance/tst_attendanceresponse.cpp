// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "attendance/attendanceresponse.h"
#include "base/exceptions.h"
#include "support/testcase.h"

class TestAttendanceResponse : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void isReadOrRefused_data()
    {
        columns<QString, QString>("body", "outcome");
        const QString time = "<serverTime>2026-11-23T10:05:00</serverTime>"
                             "<clientTime>2026-11-23T10:04:59+01:00</clientTime>"_s;
        const QString rest = "<name>Jürgen &amp; Co</name><notificationType>INFO</notificationType>"
                             "<title>T</title><message>M</message>"_s;
        const auto document = [](const QString &content) {
            return "<?xml version='1.0'?><attendanceResponse>%1</attendanceResponse>"_s.arg(
                content);
        };
        const auto withTimeout = [&](const QString &timeout) {
            return document(time + rest + "<timeout>%1</timeout>"_s.arg(timeout));
        };
        row("good", withTimeout("8000"_s), "0 Jürgen & Co T M 8000");
        row("one more", document(time + rest + "<x><y/></x><timeout>5</timeout>"_s),
            "0 Jürgen & Co T M 5 unknown element");
        row("foreign prefix", withTimeout("5"_s).replace("<name"_s, "<name a:b='c'"_s),
            "0 Jürgen & Co T M 5");
        row("past timeout", withTimeout("-5"_s), "0 Jürgen & Co T M 20000");
        row("endless timeout", withTimeout("99999999999"_s), "0 Jürgen & Co T M 2147483647");
        row("no timeout", document(time + rest), "Invalid server response (3).");
        row("no times", document(rest + "<timeout>5</timeout>"_s), "Invalid server response (3).");
        row("unknown type", withTimeout("5"_s).replace("INFO"_s, "info"_s),
            "Invalid server response (3).");
        row("no type to show", withTimeout("5"_s).replace("INFO"_s, "TYPE_COUNT"_s),
            "Invalid server response (3).");
        row("other root", "<attendance/>", "Invalid server response (1).");
        row("document type", withTimeout("5"_s).replace("?>"_s, "?><!DOCTYPE a>"_s),
            "Invalid server response (1).");
        row("overlong tag",
            withTimeout("5</timeout><x y='%1'/><timeout>5"_s.arg(QString(2048, u'z'))),
            "Invalid server response (1).");
        row("no XML", "OK", "Invalid server response (1).");
        row("cut off", withTimeout("5"_s).chopped(5), "Invalid server response (2).");
        row("something behind it", withTimeout("5"_s) + "<b/>"_s, "Invalid server response (2).");
    }

    void isReadOrRefused()
    {
        log().allow("AttendanceResponse(): "_s);
        QString outcome;
        try {
            const AttendanceResponse response(at("body").toUtf8());
            outcome = "%1 %2 %3 %4 %5"_s.arg(response.type())
                          .arg(response.name(), response.title(), response.message())
                          .arg(response.timeout());
            if (!log().lines().isEmpty())
                outcome += " unknown element"_s;
        } catch (const AttendanceErrorException &e) {
            outcome = QString::fromUtf8(e.what());
            QVERIFY(!log().lines().isEmpty());
        }
        QTEST(outcome, "outcome");
    }
};

static RegisterTest<TestAttendanceResponse> registerAttendanceResponse;

#include "tst_attendanceresponse.moc"
