// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/exitwatchdog.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr unsigned limitSecs = 4;
constexpr auto guiThread = "GUI thread";

// Global because a signal handler gets no context.
std::atomic_bool s_isLimited = false;
std::atomic<const char *> s_waitingFor = guiThread;

/** Writes to the log unless that would block: a full pipe may be what the program waits for. */
void writeToLog(const char *text)
{
    pollfd log { STDERR_FILENO, POLLOUT, 0 };
    if (poll(&log, 1, 0) == 1 && (log.revents & POLLOUT) != 0) [[maybe_unused]]
        const ssize_t written = write(STDERR_FILENO, text, std::strlen(text));
}

[[noreturn]] void onAlarm(int)
{
    writeToLog("The program did not end in time. Leaving behind: ");
    writeToLog(s_waitingFor);
    writeToLog("\n");
    std::_Exit(EXIT_FAILURE);
}

} // namespace

namespace exitwatchdog {

void limitTimeToEnd()
{
    if (s_isLimited.exchange(true))
        return;
    // A signal, not a thread: it needs nothing that could be locked.
    struct sigaction action
    {
    };
    action.sa_handler = onAlarm;
    sigemptyset(&action.sa_mask);
    sigaction(SIGALRM, &action, nullptr);
    alarm(limitSecs);
}

void cancel()
{
    alarm(0);
    s_isLimited = false;
}

Waiting::Waiting(const char *name)
{
    s_waitingFor = name;
}

Waiting::~Waiting()
{
    s_waitingFor = guiThread;
}

} // namespace exitwatchdog
