// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "base/ratelimit.h"

#include <QHash>
#include <QString>

#include <functional>

/**
 * Limits what the log takes: per source a few lines a second, each line cut to 256 bytes and made
 * one line. What a source says beyond that is counted, and written as "… and 1 234 more" when the
 * second is over.
 *
 * A source is a place in the code. One object serves one thread.
 */
class LogLimit
{
public:
    using Time = RateLimit::Time;
    using Writer = std::function<void(QtMsgType, const QMessageLogContext &, const QString &)>;

    static constexpr int defaultLines = 5; ///< of a source in a second
    static constexpr int maxBytes = 256;

    /** Admits @p lines of a source in a second, all of them for 0. */
    LogLimit(int lines, Writer write);

    /** Writes or counts a line. True if it is the first that its source has to count. */
    bool log(QtMsgType type, const QMessageLogContext &context, const QString &text, Time now);
    /** Writes the counts of the sources whose second is over. True if others are still counting. */
    bool flush(Time now);
    /** Writes all counts. */
    void flushAll() { flush(Time::max()); }

private:
    struct Source
    {
        RateLimit limit;
        QtMsgType type;
        QString refused; ///< the first line that was counted
    };

    void writeCount(Source &source);

    int m_lines;
    Writer m_write;
    QHash<uint, Source> m_sources;
};

/** @p text as one line of at most LogLimit::maxBytes bytes of UTF-8. */
[[nodiscard]] QString logExcerpt(const QString &text);

/**
 * Limits all messages of Qt and of our own from now on. LUMENBOARD_LOG_LINES sets another number
 * of lines, 0 for all of them.
 */
void installLogLimit();

/** Writes what is still counted in this thread. Call it before the process ends by force. */
void flushLog();
