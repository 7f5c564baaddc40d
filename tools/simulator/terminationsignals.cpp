// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/terminationsignals.h"

#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace simulator {
namespace {

    // A signal handler can only access globals.
    int s_event = -1;

    extern "C" void onSignal(int /*signal*/)
    {
        ::eventfd_write(s_event, 1);
    }

} // namespace

TerminationSignals::TerminationSignals(QObject *parent)
    : QObject(parent)
    , m_notifier(s_event = ::eventfd(0, EFD_CLOEXEC), QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &TerminationSignals::onActivated);
    struct sigaction action
    {
    };
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

TerminationSignals::~TerminationSignals()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    ::close(s_event);
}

void TerminationSignals::onActivated()
{
    eventfd_t count = 0;
    ::eventfd_read(s_event, &count);
    Q_EMIT received();
}

} // namespace simulator
