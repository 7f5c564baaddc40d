// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/virtualreader.h"

#include <QSerialPort>
#include <QSerialPortInfo>
#include <QTest>

using namespace simulator;

class TestReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isListedAsItPresentsItself()
    {
        SerialBus bus;
        VirtualReader maker(bus);
        VirtualReader described(bus, { {}, 0, 0, {}, QStringLiteral("USB RFID Wedge") });
        VirtualReader named(bus, { bus.nextPortName() + QStringLiteral("elatec"), 0x1a86, 1 });
        QVERIFY(maker.plug() && described.plug() && named.plug());
        const auto info
            = [](const VirtualReader &reader) { return QSerialPortInfo(reader.portName()); };
        QCOMPARE(info(maker).vendorIdentifier(), quint16(0x09d8));
        QCOMPARE(info(maker).description(), QStringLiteral("Card Reader"));
        QCOMPARE(info(maker).manufacturer(), QStringLiteral("Elatec"));
        QVERIFY(!info(described).isNull() && !info(described).hasVendorIdentifier());
        QCOMPARE(info(described).description(), QStringLiteral("USB RFID Wedge"));
        QCOMPARE(info(named).productIdentifier(), quint16(1));
        QCOMPARE(QSerialPortInfo::availablePorts().first().portName(), maker.portName());
    }

    void vanishesAndComesBack()
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
                    port.close(); // or a hang-up is told without end
            });
            QVERIFY(port.open(QIODevice::ReadOnly));
            QTRY_COMPARE(port.peek(99), QByteArray("stale"));
            reader.tap("0A1B2C3D");
            reader.send("half");
            other.tap("none of this port's");
            QTRY_COMPARE(port.peek(99), QByteArray("stale0A1B2C3D\r\nhalf"));
            QCOMPARE(errors, { QSerialPort::NoError }); // of opening

            reader.unplug();
            QTRY_COMPARE(errors.count(), 2);
            QCOMPARE(errors.last(), QSerialPort::ResourceError);
            QVERIFY(QSerialPortInfo(reader.portName()).isNull());
            QVERIFY(!QSerialPortInfo(other.portName()).isNull());
            QVERIFY(!reader.isPlugged() && !reader.send("lost"));
        }
    }

    void deliversWhatTheLineDoesNotTakeAtOnce()
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

QTEST_GUILESS_MAIN(TestReader)

#include "tst_virtualreader.moc"
