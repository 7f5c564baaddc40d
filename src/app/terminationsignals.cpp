// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/terminationsignals.h"

#include "app/exitwatchdog.h"

#include <QDebug>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

/**
 * The pipe from the signal handler to the event loop. Global because a handler gets no context. The
 * handler may call only async-signal-safe functions such as write().
 */
std::array<int, 2> s_pipe { -1, -1 };
/** A signal between two windows must not wait for the event loop of the next one. */
std::atomic_bool s_isCaught = false;

void onSignal(int number)
{
    const int savedErrno = errno;
    exitwatchdog::limitTimeToEnd();
    s_isCaught = true;
    const auto byte = static_cast<char>(number);
    // A full pipe already wakes the event loop.
    [[maybe_unused]] const ssize_t written = write(s_pipe[1], &byte, 1);
    errno = savedErrno;
}

bool catchSignal(int number)
{
    struct sigaction action
    {
    };
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    return sigaction(number, &action, nullptr) == 0;
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent)
    : QObject(parent)
{
    if (pipe2(s_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0 || !catchSignal(SIGTERM)
        || !catchSignal(SIGINT)) {
        qWarning() << "Failed to catch termination signals:" << qt_error_string(errno);
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(s_pipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &TerminationSignals::onReadable);
}

TerminationSignals::~TerminationSignals()
{
    signal(SIGTERM, SIG_DFL);
    signal(SIGINT, SIG_DFL);
    exitwatchdog::cancel();
    s_isCaught = false;
    m_notifier.reset();
    for (int &end : s_pipe) {
        if (end >= 0)
            close(end);
        end = -1;
    }
}

bool TerminationSignals::isRequested()
{
    return s_isCaught;
}

void TerminationSignals::onReadable()
{
    char number = 0;
    if (read(s_pipe[0], &number, 1) != 1)
        return; // spurious wake-up
    qInfo() << "Ending on signal" << static_cast<int>(number);
    Q_EMIT requested();
}
