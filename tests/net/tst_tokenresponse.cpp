// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/exceptions.h"
#include "net/tokenresponse.h"
#include "support/testcase.h"

#include <QBuffer>

using namespace std::chrono_literals;
using std::chrono::milliseconds;

class TestTokenResponse : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void isReadOrRefusedWithAReason_data()
    {
        columns<QByteArray, QString>("body", "outcome");
        const auto body = [](const QByteArray &text, const char *outcome) {
            row(text.constData(), text, outcome);
        };
        body(
            R"({"access_token":"a","expires_in":300,"refresh_token":"r","refresh_expires_in":1800,)"
            R"("token_type":"Bearer","not-before-policy":0,"session_state":"x","scope":"email"})",
            "a 300 r 1800");
        body(R"({"access_token":"a","expires_in":300,"refresh_expires_in":0,"scope":"email"})",
             "a 300  0"); // current servers, for client credentials
        body(R"({"access_token":)", "Failed to read JSON: ");
        body("{}", "JSON is empty.");
        body("[]", "Response is not an object.");

        const auto object = [&body](const QByteArray &members, const char *outcome) {
            body("{" + members + "}", outcome);
        };
        object(R"("access_token":"a","expires_in":9,"refresh_token":null)", "a 9  0");
        object(R"("access_token":"a","expires_in":1,"refresh_token":"r","refresh_expires_in":null)",
               "a 1 r 0");
        object(R"("access_token":"a","expires_in":9,"x":[{"a":1},{"a":2}])", "a 9  0");
        object(R"("access_token":"a","expires_in":9,"x":{"a":{},"\u0061":1})",
               "Failed to read JSON: "); // Qt would leak the first
        object(R"("expires_in":9)", R"(JSON object does not contain "access_token".)");
        object(R"("access_token":1,"expires_in":9)", R"("access_token" is not a string.)");
        object(R"("access_token":"","expires_in":9)", R"("access_token" is empty.)");
        object(R"("access_token":"a\r\nX-Evil: 1","expires_in":9)",
               R"("access_token" has characters that no header takes.)");
        object(R"("access_token":"a")", R"(JSON object does not contain "expires_in".)");
        object(R"("access_token":"a","expires_in":"300")", R"("expires_in" is not a number.)");
        object(R"("access_token":"a","expires_in":1.5)", R"("expires_in" is not an int (1.5).)");
        object(R"("access_token":"a","expires_in":1e12)", R"("expires_in" is not an int (1e+12).)");
        object(R"("access_token":"a","expires_in":0)", R"("expires_in" is too soon (0).)");
    }

    void isReadOrRefusedWithAReason()
    {
        QString outcome;
        try {
            const TokenResponse response = parseTokenResponse(at<QByteArray>("body"));
            outcome = "%1 %2 %3 %4"_s.arg(response.accessToken)
                          .arg(response.expiresIn)
                          .arg(response.refreshToken)
                          .arg(response.refreshExpiresIn);
        } catch (const KCException &e) {
            outcome = QString::fromUtf8(e.what());
        }
        QVERIFY2(outcome.startsWith(at("outcome")), qPrintable(outcome));
    }

    void tellsWhyItIsRefused()
    {
        const auto reason = [](QByteArray body) {
            QBuffer reply(&body);
            return reply.open(QIODevice::ReadOnly) ? refusalReason(reply) : QString();
        };
        QCOMPARE(reason(R"({"error":"denied","error_description":"off,\nBasic eDp5"})"),
                 " [denied: off, Basic ********]"_s);
        QCOMPARE(reason("[404]"), QString());
    }

    void isRenewedInTime()
    {
        QCOMPARE(renewalInterval(277), milliseconds(24s)); // nine tenths are 249 s
        QCOMPARE(renewalInterval(278), milliseconds(25s)); // 250 s
        QCOMPARE(renewalInterval(6667), milliseconds(600s)); // 6000 s
        QCOMPARE(renewalInterval(6666), milliseconds(599s)); // 5999 s
        QCOMPARE(renewalInterval(std::numeric_limits<int>::max()), milliseconds(600s));
    }
};

static RegisterTest<TestTokenResponse> registerTokenResponse;

#include "tst_tokenresponse.moc"
