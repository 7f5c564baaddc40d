// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/commandinput.h"

#include <array>
#include <cerrno>
#include <unistd.h>

namespace simulator {

CommandInput::CommandInput(QObject *parent)
    : QObject(parent)
    , m_notifier(STDIN_FILENO, QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &CommandInput::onActivated);
}

void CommandInput::onActivated()
{
    std::array<char, 4096> bytes {};
    const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    m_buffer.append(count > 0 ? QByteArray(bytes.data(), int(count)) : QByteArray("\n"));

    for (int end = m_buffer.indexOf('\n'); end >= 0; end = m_buffer.indexOf('\n')) {
        const QString line = QString::fromUtf8(m_buffer.left(end)).trimmed();
        m_buffer.remove(0, end + 1);
        if (!line.isEmpty())
            Q_EMIT lineRead(line);
    }
    if (count <= 0) {
        m_notifier.setEnabled(false);
        Q_EMIT ended();
    }
}

} // namespace simulator
