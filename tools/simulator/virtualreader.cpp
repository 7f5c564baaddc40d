// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/virtualreader.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace simulator {

VirtualReader::VirtualReader(SerialBus &bus, SerialBus::Device device, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
    , m_device(std::move(device))
{
    if (m_device.portName.isEmpty())
        m_device.portName = m_bus.nextPortName();
}

VirtualReader::~VirtualReader()
{
    unplug();
}

bool VirtualReader::plug()
{
    if (isPlugged())
        return true;
    const QString terminal = openTerminal();
    if (terminal.isEmpty()) {
        m_errorString = QStringLiteral("No pseudo terminal: %1").arg(qt_error_string());
        closeTerminal();
        return false;
    }
    send(std::exchange(m_stale, {}));
    if (m_bus.add(m_device, terminal, &m_errorString))
        return true;
    closeTerminal();
    return false;
}

void VirtualReader::unplug()
{
    if (!isPlugged())
        return;
    // The port must be off the list before its user looks for the cause of the hang-up.
    m_bus.remove(m_device.portName);
    closeTerminal();
}

bool VirtualReader::send(const QByteArray &bytes)
{
    if (!isPlugged())
        return false;
    m_unsent += bytes;
    flush();
    return true;
}

QString VirtualReader::openTerminal()
{
    // The kiosk that we start must not inherit an end, or the line would never hang up.
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    std::array<char, 64> terminal {};
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0
        || ::ptsname_r(m_master, terminal.data(), terminal.size()) != 0)
        return {};
    m_slave = ::open(terminal.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings {};
    if (m_slave < 0 || ::tcgetattr(m_slave, &settings) != 0)
        return {};
    ::cfmakeraw(&settings);
    if (::tcsetattr(m_slave, TCSANOW, &settings) != 0)
        return {};
    m_writable = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Write);
    m_writable->setEnabled(false);
    connect(m_writable.get(), &QSocketNotifier::activated, this, &VirtualReader::flush);
    return QFile::decodeName(terminal.data());
}

void VirtualReader::closeTerminal()
{
    m_writable.reset();
    m_unsent.clear();
    for (int *end : { &m_slave, &m_master }) {
        if (*end >= 0)
            ::close(std::exchange(*end, -1));
    }
}

void VirtualReader::flush()
{
    const ssize_t count = ::write(m_master, m_unsent.constData(), size_t(m_unsent.size()));
    if (count >= 0)
        m_unsent.remove(0, int(count));
    else if (errno != EAGAIN)
        m_unsent.clear(); // nobody can read them any more
    m_writable->setEnabled(!m_unsent.isEmpty());
}

} // namespace simulator
