// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "reader/linesplitter.h"

#include <QDebug>

#include <algorithm>

namespace {

constexpr int maxLineBytes = 4096;
constexpr int shownBytes = 32;

bool isTerminator(char c)
{
    return c == '\r' || c == '\n';
}

} // namespace

void LineSplitter::append(const QByteArray &bytes)
{
    m_buffer.remove(0, m_start); // here, not per line: a flood of lines would take quadratic time
    m_start = 0;
    m_buffer.append(bytes);
}

std::optional<QByteArray> LineSplitter::takeLine()
{
    while (true) {
        const auto begin = m_buffer.cbegin() + m_start;
        const auto end = std::find_if(begin, m_buffer.cend(), isTerminator);
        const bool isWhole = end != m_buffer.cend();
        const int length = static_cast<int>(end - begin);
        const bool isTooLong = length > maxLineBytes;
        if (!isWhole && !isTooLong && !m_isSkipping)
            return {};

        const QByteArray line = m_buffer.mid(m_start, std::min(length, maxLineBytes));
        m_start += length + (isWhole ? 1 : 0);
        if (isTooLong && !m_isSkipping)
            qWarning() << "Ignoring transponder ID with unusual length" << line.left(shownBytes)
                       << "...";
        const bool isDropped = isTooLong || m_isSkipping;
        m_isSkipping = isDropped && !isWhole;
        if (!isWhole)
            return {};
        if (!isDropped)
            return line;
    }
}

QByteArray LineSplitter::excerpt() const
{
    return m_buffer.mid(m_start, shownBytes);
}

void LineSplitter::clear()
{
    if (size() > 0)
        qWarning() << "Discarding what the reader sent:" << excerpt() << size() << "bytes";
    m_buffer.clear();
    m_start = 0;
    m_isSkipping = false;
}
