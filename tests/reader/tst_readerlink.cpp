// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "reader/linesplitter.h"
#include "reader/readerport.h"
#include "support/testcase.h"

Q_DECLARE_METATYPE(QVector<PortTraits>)

class TestReaderLink : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cutsLines_data()
    {
        columns<QByteArrayList, QString, int>("deliveries", "lines", "dropped");
        const auto cut = [](const char *tag, const QByteArrayList &deliveries, const QString &lines,
                            int dropped = 0) { row(tag, deliveries, lines, dropped); };
        const auto many = [](char c, int count) { return QByteArray(count, c); };
        cut("CR LF", { "0A1B2C3D\r\n" }, "0A1B2C3D,"_s);
        cut("CR", { "0A1B2C3D\r" }, "0A1B2C3D"_s);
        cut("LF", { "0A1B2C3D\n0000FFFF\n" }, "0A1B2C3D,0000FFFF"_s);
        cut("LF CR", { "1\n\r2\r" }, "1,,2"_s);
        cut("without an end", { "0A1B2C3D" }, {});
        cut("in pieces", { "0A1B", "2C3D", "\r", "\n1", "2\r" }, "0A1B2C3D,,12"_s);
        cut("longest", { many('x', 4096) + "\r1\r" }, QString(4096, QLatin1Char('x')) + ",1"_s);
        cut("too long", { many('x', 4097) + "\r1\r" }, "1"_s, 1);
        cut("too long in pieces", { many('x', 4000), many('x', 4000), "0A1B2C3D\r1\r" }, "1"_s, 1);
        cut("a megabyte", { many('x', 1000000), "tail\r1\r" }, "1"_s, 1);
        cut("twice too long", { many('x', 5000) + '\r' + many('y', 5000), "\r1\r" }, "1"_s, 2);
    }

    void cutsLines()
    {
        const int dropped = at<int>("dropped");
        if (dropped > 0)
            log().expect("Ignoring transponder ID with unusual length"_s);
        LineSplitter cutter;
        QStringList lines;
        for (const QByteArray &delivery : at<QByteArrayList>("deliveries")) {
            cutter.append(delivery);
            while (const auto line = cutter.takeLine())
                lines.append(QString::fromLatin1(*line));
        }
        QCOMPARE(lines.join(QLatin1Char(',')), at("lines"));
        QCOMPARE(log().lines().size(), dropped);
    }

    void choosesThePort_data()
    {
        columns<QVector<PortTraits>, QString>("ports", "chosen");
        using Ports = QVector<PortTraits>;
        const PortTraits plain { "ttyS0"_s, {}, 0 };
        const PortTraits maker { "ttyACM0"_s, "TWN4 CDC"_s, 0x09D8 };
        const PortTraits named { "ttyELATEC1"_s, {}, 0x1a86 };
        const PortTraits described { "ttyUSB0"_s, "USB rFiD wedge"_s, 0x1a86 };
        row("none", Ports {}, "");
        row("no reader", Ports { plain, { "ttyUSB0"_s, "Reader"_s, 0x09D7 } }, "");
        row("by vendor", Ports { plain, maker }, "ttyACM0");
        row("by name", Ports { plain, named }, "ttyELATEC1");
        row("by description", Ports { plain, described }, "ttyUSB0");
        row("vendor before all", Ports { described, named, maker }, "ttyACM0");
        row("name before description", Ports { described, named }, "ttyELATEC1");
        row("first of equals", Ports { maker, { "ttyACM1"_s, {}, 0x09D8 } }, "ttyACM0");
    }

    void choosesThePort()
    {
        QCOMPARE(chooseReaderPort(at<QVector<PortTraits>>("ports")), at("chosen"));
    }
};

static RegisterTest<TestReaderLink> registerReaderLink;

#include "tst_readerlink.moc"
