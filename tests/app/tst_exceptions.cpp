// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/exceptions.h"
#include "support/testcase.h"

class TestExceptions : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void knowTheirKindAndText()
    {
        const QString text = "Gerät „Süd“ 🙂"_s;
        check([&] { throw Exception(text); }, text, -1);
        check([&] { throw KCException(text); }, text, -1);
        check([&] { throw AttendanceException(4, text); }, text, 4);
        check([&] { throw AttendanceErrorException(text); }, text, 3);
        check([&] { throw AttendanceWarningException(text); }, text, 2);
        check([&] { throw KCException(QString()); }, ""_s, -1);
    }

private:
    /** @p type is that of an AttendanceException, -1 for others. */
    static void check(const std::function<void()> &fail, const QString &text, int type)
    {
        try {
            fail();
        } catch (const Exception &e) {
            const auto *attendance = dynamic_cast<const AttendanceException *>(&e);
            QCOMPARE(attendance ? attendance->type() : -1, type);
            QCOMPARE(QByteArray(e.what()), text.toUtf8());
        }
    }
};

static const RegisterTest<TestExceptions> registered;

#include "tst_exceptions.moc"
