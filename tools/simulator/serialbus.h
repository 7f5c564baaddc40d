// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QHash>
#include <QMap>
#include <QString>

#include <memory>

namespace simulator {

/**
 * A simulated USB bus. Qt's serial port classes see its ports in every process that is started with
 * environment(). This process sees them only if it was started by umockdev-wrapper.
 *
 * Sets an environment variable, so create it before other threads run. One at a time.
 */
class SerialBus
{
public:
    /** How a port identifies itself. */
    struct Device
    {
        QString portName; ///< locked by Qt machine-wide; empty for nextPortName()
        quint16 vendorId = 0x09d8; ///< 0 for none
        quint16 productId = 0x0420;
        QString manufacturer = QStringLiteral("Elatec");
        QString description = QStringLiteral("Card Reader");
    };

    SerialBus();
    Q_DISABLE_COPY_MOVE(SerialBus)
    /// Removes the files of the bus. Programs that use its ports must have ended.
    ~SerialBus();

    /// The library that shows the bus to a program. Empty if it is not installed.
    [[nodiscard]] static QString preloadLibrary();
    /// The environment variables for a program that uses the bus.
    [[nodiscard]] QMap<QString, QString> environment() const;
    /// A port name that no other process uses.
    [[nodiscard]] QString nextPortName();

    /// Adds the device. Its node leads to the terminal.
    /// @param error receives the reason of a failure
    [[nodiscard]] bool add(const Device &device, const QString &terminal, QString *error);
    void remove(const QString &portName);

private:
    struct Testbed;

    const std::unique_ptr<Testbed> m_testbed;
    QHash<QString, int> m_sockets; ///< by port name; a port keeps its socket
    int m_namedPorts = 0;
};

} // namespace simulator
