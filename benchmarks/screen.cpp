// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "screen.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <stdexcept>

Screen::Screen(const QString &path)
    : m_file(path)
{
    const uchar *dump = nullptr;
    if (m_file.open(QIODevice::ReadOnly))
        dump = m_file.map(0, m_file.size());
    if (!dump)
        throw std::runtime_error("the picture of the display is unreadable");
    // An X window dump: header fields of 4 bytes, then colours of 12 bytes each, then the pixels.
    const auto field = [dump](int place) { return qFromBigEndian<quint32>(dump + 4 * place); };
    m_width = field(4);
    m_height = field(5);
    m_bytesPerLine = field(12);
    m_pixels = dump + field(0) + field(19) * 12;
}

bool Screen::showsContent() const
{
    // The strokes of a title are several pixels wide, so every second pixel is enough.
    constexpr quint32 columnStep = 2;
    constexpr quint32 rowStep = 3;
    constexpr uchar light = 0xc0;
    constexpr int minPixels = 40;

    int found = 0;
    for (quint32 y = 0; y < m_height / 4; y += rowStep) {
        const uchar *row = m_pixels + y * m_bytesPerLine;
        for (quint32 x = m_width * 2 / 3; x < m_width; x += columnStep)
            found += std::min({ row[4 * x], row[4 * x + 1], row[4 * x + 2] }) >= light ? 1 : 0;
    }
    return found >= minPixels;
}

quint64 Screen::noticeSide() const
{
    // Enough to see the first pixel of a panel that slides in from the right. A denser grid would
    // cost the programs memory bandwidth.
    constexpr quint32 columnStep = 16;
    constexpr quint32 rowStep = 32;
    constexpr quint64 prime = 1'099'511'628'211; // of the Fowler-Noll-Vo hash

    quint64 sum = 0;
    for (quint32 y = rowStep / 2; y < m_height; y += rowStep) {
        const uchar *row = m_pixels + y * m_bytesPerLine;
        for (quint32 x = m_width - 1; x > m_width / 2; x -= columnStep) {
            quint32 pixel = 0;
            std::memcpy(&pixel, row + 4 * x, sizeof pixel);
            sum = (sum ^ pixel) * prime;
        }
    }
    return sum;
}
