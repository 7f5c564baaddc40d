// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDirIterator>
#include <QObject>

#include <functional>

/**
 * One pass over the records of a spool, a few at a time. Reads the file names one by one, so that
 * memory does not grow with the spool, and returns to the event loop after each record.
 */
class SpoolPass : public QObject
{
    Q_OBJECT

public:
    static constexpr int maxInFlight = 4;
    /** The pass ends after this many records in a row without a response from the service. */
    static constexpr int maxMisses = 3;

    /** Sends the record of a file; false if the record is skipped. */
    using Send = std::function<bool(const QString &path)>;

    SpoolPass(const QString &folder, Send send, QObject *parent = nullptr);

    /** Starts or resumes the pass, unless it is paused. */
    void proceed();
    /** A paused pass sends no further record. */
    void setPaused(bool paused);
    /** Call once for each sent record that has ended; @p hadResponse if the service responded. */
    void noteEnd(bool hadResponse);

Q_SIGNALS:
    /** Nothing is in flight or left to send. */
    void finished();

private:
    void step();

    QDirIterator m_files;
    Send m_send;
    int m_inFlight = 0;
    int m_misses = 0; ///< in a row
    bool m_hasGivenUp = false;
    bool m_isPaused = false;
    bool m_isScheduled = false;
    bool m_isOver = false;
};
