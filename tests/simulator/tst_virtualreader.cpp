// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/virtualreader.h"
#include "support/testcase.h"

#include <QSerialPort>
#include <QSerialPortInfo>

using namespace simulator;

class TestVirtualReader : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void isListedWithItsDescription()
    {
        SerialBus bus;
        VirtualReader reader(bus);
        VirtualReader described(bus, { {}, 0, 0, {}, "USB RFID Wedge"_s });
        VirtualReader named(bus, { bus.nextPortName() + "elatec"_s, 0x1a86, 1 });
        QVERIFY(reader.plug() && described.plug() && named.plug());
        const auto info
            = [](const VirtualReader &each) { return QSerialPortInfo(each.portName()); };
        QCOMPARE(info(reader).vendorIdentifier(), quint16(0x09d8));
        QCOMPARE(info(reader).description(), "Card Reader"_s);
        QCOMPARE(info(reader).manufacturer(), "Elatec"_s);
        QVERIFY(!info(described).isNull() && !info(described).hasVendorIdentifier());
        QCOMPARE(info(described).description(), "USB RFID Wedge"_s);
        QCOMPARE(info(named).productIdentifier(), quint16(1));
        QCOMPARE(QSerialPortInfo::availablePorts().first().portName(), reader.portName());
    }

    void disappearsAndComesBack()
    {
        SerialBus bus;
        VirtualReader other(bus);
        VirtualReader reader(bus);
        QVERIFY(other.plug());
        QVERIFY(!reader.tap("0A1B2C3D"));
        for (int round = 0; round < 3; ++round) {
            reader.setStaleBytes("stale");
            QVERIFY2(reader.plug(), qPrintable(reader.errorString()));
            QSerialPort port(reader.portName());
            QVector<QSerialPort::SerialPortError> errors;
            connect(&port, &QSerialPort::errorOccurred, &port, [&](auto error) {
                errors += error;
                if (error != QSerialPort::NoError)
                    port.close(); // otherwise a hang-up is reported endlessly
            });
            QVERIFY(port.open(QIODevice::ReadOnly));
            QTRY_COMPARE(port.peek(99), QByteArray("stale"));
            reader.tap("0A1B2C3D");
            reader.send("half");
            other.tap("for another port");
            QTRY_COMPARE(port.peek(99), QByteArray("stale0A1B2C3D\r\nhalf"));
            QCOMPARE(errors, { QSerialPort::NoError }); // from open()

            reader.unplug();
            QTRY_COMPARE(errors.count(), 2);
            QCOMPARE(errors.last(), QSerialPort::ResourceError);
            QVERIFY(QSerialPortInfo(reader.portName()).isNull());
            QVERIFY(!QSerialPortInfo(other.portName()).isNull());
            QVERIFY(!reader.isPlugged() && !reader.send("lost"));
        }
    }

    void deliversMoreThanTheLineCanHold()
    {
        SerialBus bus;
        VirtualReader reader(bus);
        QVERIFY(reader.plug());
        QSerialPort port(reader.portName());
        QVERIFY(port.open(QIODevice::ReadOnly));
        const QByteArray flood = QByteArray("0123456789abcdef").repeated(20'000);
        reader.send(flood);
        QTRY_COMPARE(port.bytesAvailable(), qint64(flood.size()));
        QCOMPARE(port.readAll(), flood);
    }
};

static const RegisterTest<TestVirtualReader> registered;

#include "tst_virtualreader.moc"
