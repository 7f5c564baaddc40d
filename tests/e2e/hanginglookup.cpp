// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QCoreApplication>
#include <QSslConfiguration>

#include <netdb.h>
#include <unistd.h>

/** For preloading: every name look-up hangs forever. */
extern "C" int getaddrinfo(const char *, const char *, const addrinfo *, addrinfo **)
{
    while (true)
        pause();
}

/** The program also trusts the certificates in the file TRUSTED_CA. */
static void trust()
{
    auto configuration = QSslConfiguration::defaultConfiguration();
    if (configuration.addCaCertificates(qEnvironmentVariable("TRUSTED_CA", "/none")))
        QSslConfiguration::setDefaultConfiguration(configuration);
}
Q_COREAPP_STARTUP_FUNCTION(trust)
