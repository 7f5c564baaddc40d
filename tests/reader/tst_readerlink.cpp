// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "reader/linesplitter.h"
#include "reader/readerport.h"
#include "support/testcase.h"

class TestReaderLink : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cutsLines_data()
    {
        columns<QByteArray, QString, int>("deliveries", "lines", "dropped"); // split at |
        const QByteArray full(4096, 'x');
        row("CR LF", QByteArray("0A1B2C3D\r\n"), "0A1B2C3D,", 0);
        row("CR", QByteArray("0A1B2C3D\r"), "0A1B2C3D", 0);
        row("LF", QByteArray("0A1B2C3D\n0000FFFF\n"), "0A1B2C3D,0000FFFF", 0);
        row("in pieces", QByteArray("0A1B|2C3D|\r|\n1|2\r"), "0A1B2C3D,,12", 0);
        row("maximum length", full + "\r1\r", QString::fromLatin1(full + ",1"), 0);
        row("too long", full + "x\r1\r", "1", 1);
        row("a megabyte", full.repeated(250) + "|tail\r1\r", "1", 1);
        row("twice too long", full + "x\r" + full + "x|\r1\r", "1", 2);
    }

    void cutsLines()
    {
        log().allow("Ignoring transponder ID with unusual length"_s);
        LineSplitter splitter;
        QStringList lines;
        for (const QByteArray &delivery : at<QByteArray>("deliveries").split('|')) {
            splitter.append(delivery);
            while (const auto line = splitter.takeLine())
                lines.append(QString::fromLatin1(*line));
        }
        QCOMPARE(lines.join(QLatin1Char(',')), at("lines"));
        QTEST(log().lines().size(), "dropped");
    }

    void choosesThePort()
    {
        const PortTraits plain { "ttyS0"_s, {}, 0 };
        const PortTraits maker { "ttyACM0"_s, "TWN4 CDC"_s, 0x09D8 };
        const PortTraits named { "ttyELATEC1"_s, {}, 0x1a86 };
        const PortTraits described { "ttyUSB0"_s, "USB rFiD wedge"_s, 0x1a86 };
        QCOMPARE(chooseReaderPort({ plain, { "ttyUSB0"_s, "Reader"_s, 0x09D7 } }), QString());
        QCOMPARE(chooseReaderPort({ plain, described }), described.name);
        QCOMPARE(chooseReaderPort({ described, named }), named.name);
        QCOMPARE(chooseReaderPort({ described, named, maker }), maker.name);
        QCOMPARE(chooseReaderPort({ maker, { "ttyACM1"_s, {}, 0x09D8 } }), maker.name);
    }
};

static RegisterTest<TestReaderLink> registerReaderLink;

#include "tst_readerlink.moc"
