// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace simulator {

/** Lines from standard input as they come, in the thread's event loop. */
class CommandInput : public QObject
{
    Q_OBJECT

public:
    explicit CommandInput(QObject *parent = nullptr);

Q_SIGNALS:
    /// A line without its end; empty ones are left out.
    void lineRead(const QString &line);
    /// The input has ended; nothing follows.
    void ended();

private:
    void onActivated();

    QSocketNotifier m_notifier;
    QByteArray m_buffer;
};

} // namespace simulator
