// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFile>

/**
 * The picture of a virtual display, looked at from outside.
 *
 * Xvfb keeps its picture in a file that it maps to memory (-fbdir), and this maps the same file.
 * So a look costs neither side a request, needs nothing in the programs that are looked at, and
 * sees what a person would: not that a frame was drawn, but that it has arrived.
 */
class Screen
{
public:
    /** @p path is the display's file. Throws std::runtime_error. */
    explicit Screen(const QString &path);

    /** Whether light text stands in the upper right, where the programs show their content. */
    [[nodiscard]] bool showsContent() const;
    /** A number for the right half, where notices appear: it differs when the picture does. */
    [[nodiscard]] quint64 noticeSide() const;

private:
    QFile m_file;
    const uchar *m_pixels = nullptr;
    quint32 m_width = 0;
    quint32 m_height = 0;
    quint32 m_bytesPerLine = 0;
};
