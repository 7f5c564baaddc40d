// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class QByteArray;

/**
 * Why the image that a server sent must not be decoded; empty if it may. Allowed are PNG, JPEG, GIF
 * and SVG of plain shapes: without references, document type and compression. Allowed images have
 * at most 4 million pixels. Linear in the bytes, callable from any thread.
 */
[[nodiscard]] QString imageProblem(QByteArray bytes);
