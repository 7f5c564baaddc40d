// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <optional>

/**
 * Cuts what comes over the serial line into lines. CR and LF each end a line, so that a pair of
 * them yields an empty one. A line that never ends is dropped up to its terminator, of which the
 * log hears once, so that its tail can not pass for a card.
 */
class LineSplitter
{
public:
    void append(const QByteArray &bytes);
    /** The next whole line without its terminator; nothing when there is none yet. */
    [[nodiscard]] std::optional<QByteArray> takeLine();
    /** Forgets what has not been taken, and tells the log. */
    void clear();
    /** Drops what has not been taken if it is more than a line can be. */
    void limitBacklog();
    /** Beginning of what waits, for the log. */
    [[nodiscard]] QByteArray excerpt() const;

private:
    QByteArray m_buffer;
    int m_start = 0; ///< of what has not been taken
    bool m_isSkipping = false; ///< amid a line that grew too long
};
