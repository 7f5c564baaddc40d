// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <optional>

/**
 * Splits the bytes of the serial line into lines. CR and LF each end a line, so a pair of them
 * yields an empty one. A line that is too long is dropped up to its terminator, with one warning,
 * so that its tail cannot look like a card.
 */
class LineSplitter
{
public:
    void append(const QByteArray &bytes);
    /** The next whole line without its terminator; nothing if there is none yet. */
    [[nodiscard]] std::optional<QByteArray> takeLine();
    /** Discards the rest of the buffer, with a warning. */
    void clear();
    /** Bytes that wait in the buffer. */
    [[nodiscard]] int size() const { return m_buffer.size() - m_start; }
    /** The start of the buffer, for the log. */
    [[nodiscard]] QByteArray excerpt() const;

private:
    QByteArray m_buffer;
    int m_start = 0; ///< of the next line in the buffer
    bool m_isSkipping = false; ///< inside a line that is too long
};
