// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "reader/readerport.h"

#include <algorithm>
#include <array>
#include <functional>

PortTraits traitsOf(const QSerialPortInfo &port)
{
    return { port.portName(), port.description(), port.vendorIdentifier() };
}

QString chooseReaderPort(const QVector<PortTraits> &ports)
{
    using Test = bool (*)(const PortTraits &);
    constexpr std::array<Test, 3> tests {
        [](const PortTraits &port) {
            constexpr quint16 readerVendor = 0x09D8;
            return port.vendorId == readerVendor;
        },
        [](const PortTraits &port) {
            return port.name.contains(QLatin1String("elatec"), Qt::CaseInsensitive);
        },
        [](const PortTraits &port) {
            return port.description.contains(QLatin1String("rfid"), Qt::CaseInsensitive);
        },
    };
    for (const Test test : tests) {
        const auto found = std::find_if(ports.begin(), ports.end(), test);
        if (found != ports.end())
            return found->name;
    }
    return {};
}
