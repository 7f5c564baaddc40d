// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

class QThread;

/**
 * Runs the configuration worker in a thread of its own, from construction to destruction. GUI
 * thread; stands on the entry point's stack for the whole run.
 */
class WorkerController : public QObject
{
    Q_OBJECT

public:
    explicit WorkerController(QObject *parent = nullptr);
    /** Waits for the thread, at most two seconds before it is terminated. */
    ~WorkerController() override;

private:
    QThread *m_thread;
};
