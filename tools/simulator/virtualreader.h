// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "simulator/serialbus.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace simulator {

/**
 * A card reader that can be plugged into a SerialBus and sends given bytes. Lives in one thread,
 * whose event loop sends what a full line cannot take at once.
 */
class VirtualReader : public QObject
{
    Q_OBJECT

public:
    /// @param bus the bus for the reader; must outlive it
    /// @param device how the reader identifies itself; gets a port name if it has none
    explicit VirtualReader(SerialBus &bus, SerialBus::Device device = {},
                           QObject *parent = nullptr);
    Q_DISABLE_COPY_MOVE(VirtualReader)
    ~VirtualReader() override;

    [[nodiscard]] QString portName() const { return m_device.portName; }
    [[nodiscard]] bool isPlugged() const { return m_master >= 0; }
    [[nodiscard]] QString errorString() const { return m_errorString; }

    /// Appears on the bus with the same port name each time. On failure see errorString().
    [[nodiscard]] bool plug();
    /// Disappears from the bus. A program with an open port sees a hang-up.
    void unplug();

    /// Sends raw bytes, such as a part of a line. False if the reader is not plugged in. Unread
    /// bytes stay in the line for the next program that opens it.
    bool send(const QByteArray &bytes);
    /// Reads a card: sends its ID, carriage return, line feed.
    bool tap(const QByteArray &id) { return send(id + "\r\n"); }
    /// Bytes that are already in the line at the next plug().
    void setStaleBytes(const QByteArray &bytes) { m_stale = bytes; }

private:
    /// Path of the other end. Empty on failure.
    [[nodiscard]] QString openTerminal();
    void closeTerminal();
    void flush();

    SerialBus &m_bus;
    SerialBus::Device m_device;
    QString m_errorString;
    int m_master = -1; ///< the reader's end
    int m_slave = -1; ///< the other end, kept open so that the line survives its user
    QByteArray m_stale;
    QByteArray m_unsent;
    std::unique_ptr<QSocketNotifier> m_writable; ///< enabled while bytes are unsent
};

} // namespace simulator
