// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "base/exceptions.h"
#include "net/tokenresponse.h"
#include "support/testcase.h"

using namespace std::chrono_literals;

class TestTokenResponse : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void isReadOrRefusedWithAReason_data()
    {
        columns<QString, QString>("body", "outcome");
        row("with refresh token",
            R"({"access_token":"a","expires_in":300,"refresh_token":"r","refresh_expires_in":1800,)"
            R"("token_type":"Bearer","not-before-policy":0,"session_state":"x","scope":"email"})",
            "a 300 r 1800");
        row("as current servers respond to client credentials",
            R"({"access_token":"a","expires_in":300,"refresh_expires_in":0,"token_type":"Bearer",)"
            R"("not-before-policy":0,"scope":"profile email"})",
            "a 300  0");
        row("nulls",
            R"({"access_token":"a","expires_in":9,"refresh_token":null,)"
            R"("refresh_expires_in":null})",
            "a 9  0");
        row("minimum", R"({"access_token":"a","expires_in":1})", "a 1  0");
        row("empty body", "", "Failed to read JSON: illegal value");
        row("cut off", R"({"access_token":)", "Failed to read JSON: ");
        row("empty object", "{}", "JSON is empty.");
        row("empty list", "[]", "Response is not an object.");
        row("no token", R"({"expires_in":300})", R"(JSON object does not contain "access_token".)");
        row("token is a number", R"({"access_token":1,"expires_in":300})",
            R"("access_token" is not a string.)");
        row("token is empty", R"({"access_token":"","expires_in":300})",
            R"("access_token" is empty.)");
        row("token with a line end", R"({"access_token":"a\r\nX-Evil: 1","expires_in":300})",
            R"("access_token" has characters that no header takes.)");
        row("no validity", R"({"access_token":"a"})",
            R"(JSON object does not contain "expires_in".)");
        row("validity is text", R"({"access_token":"a","expires_in":"300"})",
            R"("expires_in" is not a number.)");
        row("validity is broken", R"({"access_token":"a","expires_in":1.5})",
            R"("expires_in" is not an int (1.5).)");
        row("validity is huge", R"({"access_token":"a","expires_in":1e12})",
            R"("expires_in" is not an int (1e+12).)");
        row("no validity left", R"({"access_token":"a","expires_in":0})",
            R"("expires_in" is too soon (0).)");
        row("refresh token is a list", R"({"access_token":"a","expires_in":9,"refresh_token":[]})",
            R"("refresh_token" is not a string.)");
        row("refresh validity is text",
            R"({"access_token":"a","expires_in":9,"refresh_token":"r","refresh_expires_in":"0"})",
            R"("refresh_expires_in" is not a number.)");
    }

    void isReadOrRefusedWithAReason()
    {
        QString outcome;
        try {
            const TokenResponse response = parseTokenResponse(at("body").toUtf8());
            outcome = "%1 %2 %3 %4"_s.arg(response.accessToken)
                          .arg(response.expiresIn)
                          .arg(response.refreshToken)
                          .arg(response.refreshExpiresIn);
        } catch (const KCException &e) {
            outcome = QString::fromUtf8(e.what());
        }
        QVERIFY2(outcome.startsWith(at("outcome")), qPrintable(outcome));
    }

    void isRenewedInTime_data()
    {
        columns<int, int>("expiresIn", "intervalMs");
        row("a second", 1, 24000);
        row("last of the short", 277, 24000); // 249 s
        row("first of the middle", 278, 25000); // 250 s
        row("last of the middle", 6677, 600000); // 6009 s
        row("first of the long", 6678, 600000);
        row("maximum", std::numeric_limits<int>::max(), 600000);
    }

    void isRenewedInTime()
    {
        QCOMPARE(renewalInterval(at<int>("expiresIn")).count(), qint64(at<int>("intervalMs")));
    }
};

static RegisterTest<TestTokenResponse> registerTokenResponse;

#include "tst_tokenresponse.moc"
