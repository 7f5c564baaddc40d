// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace simulator {

/** Reads lines from standard input in the thread's event loop. */
class CommandInput : public QObject
{
    Q_OBJECT

public:
    explicit CommandInput(QObject *parent = nullptr);

Q_SIGNALS:
    /// A line without its line end. Empty lines are skipped.
    void lineRead(const QString &line);
    /// End of input.
    void ended();

private:
    void onActivated();

    QSocketNotifier m_notifier;
    QByteArray m_buffer;
};

} // namespace simulator
