// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/serialbus.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace simulator {

/**
 * A card reader that can be plugged into a SerialBus and sends what it is told to. Lives in one
 * thread, whose event loop sends what a full line does not take at once.
 */
class VirtualReader : public QObject
{
    Q_OBJECT

public:
    /// @param bus what it is plugged into; has to outlive the reader
    /// @param device how it presents itself; it gets a port name if it has none
    explicit VirtualReader(SerialBus &bus, SerialBus::Device device = {},
                           QObject *parent = nullptr);
    Q_DISABLE_COPY_MOVE(VirtualReader)
    ~VirtualReader() override;

    [[nodiscard]] QString portName() const { return m_device.portName; }
    [[nodiscard]] bool isPlugged() const { return m_master >= 0; }
    [[nodiscard]] QString errorString() const { return m_errorString; }

    /// Appears on the bus, under the same port name each time. On failure see errorString().
    [[nodiscard]] bool plug();
    /// Vanishes; a program that has the port open sees it hang up.
    void unplug();

    /// Bytes as they are, a part of a line for instance. False if the reader is not plugged in.
    /// What nobody reads waits in the line for the next who opens it.
    bool send(const QByteArray &bytes);
    /// A card is held to the reader: its ID, carriage return, line feed.
    bool tap(const QByteArray &id) { return send(id + "\r\n"); }
    /// Bytes that are in the line already when the reader is next plugged in.
    void setStaleBytes(const QByteArray &bytes) { m_stale = bytes; }

private:
    /// Path of the other end, empty on failure.
    [[nodiscard]] QString openTerminal();
    void closeTerminal();
    void flush();

    SerialBus &m_bus;
    SerialBus::Device m_device;
    QString m_errorString;
    int m_master = -1; ///< the reader's end
    int m_slave = -1; ///< the other end, held so that the line stays when its user leaves
    QByteArray m_stale;
    QByteArray m_unsent;
    std::unique_ptr<QSocketNotifier> m_writable; ///< enabled while something is unsent
};

} // namespace simulator
