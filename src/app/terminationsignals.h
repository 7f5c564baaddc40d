// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

/**
 * Turns SIGTERM and SIGINT into a Qt signal in the GUI thread, so that the program ends as if its
 * window had been closed, and limits the time that this may take. One object per process.
 */
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

    /** True once a signal has arrived, even before requested(). */
    [[nodiscard]] static bool isRequested();

Q_SIGNALS:
    void requested();

private:
    void onReadable();

    std::unique_ptr<QSocketNotifier> m_notifier;
};
