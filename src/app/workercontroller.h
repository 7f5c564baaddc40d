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
    /** Stops the thread, and terminates it after two seconds. */
    ~WorkerController() override;

private:
    QThread *m_thread;
};
