// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace simulator {

/**
 * Delivers SIGINT and SIGTERM through the event loop. Catches the signals instead of blocking them,
 * because a child would inherit the block. One object per process.
 */
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    Q_DISABLE_COPY_MOVE(TerminationSignals)
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();

private:
    void onActivated();

    QSocketNotifier m_notifier;
};

} // namespace simulator
