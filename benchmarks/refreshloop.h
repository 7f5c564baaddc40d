// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

#include <functional>

class QQuickView;

/**
 * Refreshes a view many times in a row and prints samples of the process: round, objects,
 * descriptors, threads and megabytes of dirty memory. Ends the event loop after the last round.
 */
class RefreshLoop : public QObject
{
    Q_OBJECT

public:
    /** Counts all QObjects. Call before creating the first one. */
    static void countObjects();

    /** Calls @p refresh, which must lead to refreshed(), in each of the @p rounds. */
    RefreshLoop(QQuickView *view, std::function<void()> refresh, int rounds);

    /** Starts the rounds after the threads that only a program start needs have ended. */
    void start();
    /** Call it when the view has the new data. */
    void refreshed();

private:
    void onFrameSwapped();
    void endRound();
    void printSample() const;

    QQuickView *m_view;
    std::function<void()> m_refresh;
    const int m_rounds;
    int m_round = 0;
    int m_awaitedFrames = 0;
};
