// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace simulator {

/// The text as a QR code, drawn as an SVG document; empty if the text is too long for one.
[[nodiscard]] QByteArray qrCodeSvg(const QByteArray &text);

} // namespace simulator
