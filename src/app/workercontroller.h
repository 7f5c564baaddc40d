// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

class QThread;

/**
 * Runs the configuration worker in its own thread from construction to destruction. Lives in the
 * GUI thread, on the stack of main().
 */
class WorkerController : public QObject
{
    Q_OBJECT

public:
    explicit WorkerController(QObject *parent = nullptr);
    /** Stops the thread, terminates it after two seconds, and leaves it behind if it still runs. */
    ~WorkerController() override;

private:
    QThread *m_thread;
};
