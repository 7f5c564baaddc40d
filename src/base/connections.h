// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDebug>
#include <QObject>

/**
 * Connects by string signature, for connections between threads and to private slots.
 *
 * Such a connection fails only at run time: with an assertion in debug builds, with a critical log
 * line otherwise. The connection type stays automatic: queued between threads.
 */
inline QMetaObject::Connection connectChecked(const QObject *sender, const char *signal,
                                              const QObject *receiver, const char *slot)
{
    const auto connection = QObject::connect(sender, signal, receiver, slot);
    if (!connection)
        qCritical() << "Failed to connect" << signal << "to" << slot;
    Q_ASSERT(connection);
    return connection;
}
