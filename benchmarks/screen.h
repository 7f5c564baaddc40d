// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFile>

/**
 * The picture of a virtual display.
 *
 * Maps the file in which Xvfb keeps its picture (-fbdir). Reading it costs the programs nothing,
 * needs no code in them, and shows what a person sees: a frame that has arrived on the display, not
 * one that was only drawn.
 */
class Screen
{
public:
    /** @p path is the display's file. Throws std::runtime_error. */
    explicit Screen(const QString &path);

    /** True if light text is in the upper right, where the programs show their content. */
    [[nodiscard]] bool showsContent() const;
    /** A hash of the right half, where notices appear. */
    [[nodiscard]] quint64 noticeSide() const;

private:
    QFile m_file;
    const uchar *m_pixels = nullptr;
    quint32 m_width = 0;
    quint32 m_height = 0;
    quint32 m_bytesPerLine = 0;
};
