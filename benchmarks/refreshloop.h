// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

#include <functional>

class QQuickView;

/**
 * Refreshes a view many times, one after the other, and prints every so often what the process
 * holds: round, objects, descriptors, threads and megabytes of dirty memory. Ends the event loop
 * after the last round.
 */
class RefreshLoop : public QObject
{
    Q_OBJECT

public:
    /** From now on every QObject is counted; before the first one is made. */
    static void countObjects();

    /** Calls @p refresh, which leads to refreshed(), for each of the @p rounds. */
    RefreshLoop(QQuickView *view, std::function<void()> refresh, int rounds);

    /** Begins once the threads that only a start needs have ended. */
    void start();
    /** The new data has been handed to the view. */
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
