// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QHash>
#include <QMap>
#include <QString>

#include <memory>

namespace simulator {

/**
 * A made-up USB bus, which Qt's serial port classes take for the machine's in every process that is
 * started with environment(). This one may run without; one that wants to see the ports itself has
 * to be started by umockdev-wrapper.
 *
 * Create it before other threads run, since it sets an environment variable, and one at a time.
 */
class SerialBus
{
public:
    /** How a port presents itself. */
    struct Device
    {
        QString portName; ///< locked by Qt for the whole machine; one of our own if it is empty
        quint16 vendorId = 0x09d8; ///< 0 for a port that has none
        quint16 productId = 0x0420;
        QString manufacturer = QStringLiteral("Elatec");
        QString description = QStringLiteral("Card Reader");
    };

    SerialBus();
    Q_DISABLE_COPY_MOVE(SerialBus)
    /// Takes the bus's files away. Programs that use its ports must have ended before.
    ~SerialBus();

    /// The library that shows the bus to a program, empty where it is not installed.
    [[nodiscard]] static QString preloadLibrary();
    /// The variables, with their values, for a program that shall see the bus.
    [[nodiscard]] QMap<QString, QString> environment() const;
    /// A port name that no other process has.
    [[nodiscard]] QString nextPortName();

    /// Makes the device appear, with the terminal as what is behind its node.
    /// @param error the reason of a failure
    [[nodiscard]] bool add(const Device &device, const QString &terminal, QString *error);
    void remove(const QString &portName);

private:
    struct Testbed;

    const std::unique_ptr<Testbed> m_testbed;
    QHash<QString, int> m_sockets; ///< by port name, which has the same place each time
    int m_namedPorts = 0;
};

} // namespace simulator
