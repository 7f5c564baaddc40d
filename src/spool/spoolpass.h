// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDirIterator>
#include <QObject>

#include <functional>

/**
 * One way through the records of a spool, a few at a time. Names are read as it goes, so that the
 * number of files costs no memory, and between two files the event loop comes to its right.
 */
class SpoolPass : public QObject
{
    Q_OBJECT

public:
    /** Most records under way at a time. */
    static constexpr int mostInFlight = 4;
    /** After so many in a row without any answer of the service the rest waits for another pass. */
    static constexpr int mostMisses = 3;

    /** Sends the record of a file; false if it can not be sent, which is no matter of the pass. */
    using Send = std::function<bool(const QString &path)>;

    SpoolPass(const QString &folder, Send send, QObject *parent = nullptr);

    /** Begins or goes on, unless it is held. */
    void proceed();
    /** While held no further record is sent. */
    void setHeld(bool held);
    /** A record that was sent has ended, well or not; @p answered if the service said anything. */
    void noteEnd(bool answered);

Q_SIGNALS:
    /** Nothing is left to send, and nothing under way. */
    void finished();

private:
    void step();

    QDirIterator m_files;
    Send m_send;
    int m_inFlight = 0;
    int m_misses = 0; ///< in a row
    bool m_hasGivenUp = false;
    bool m_isHeld = false;
    bool m_isScheduled = false;
    bool m_isOver = false;
};
