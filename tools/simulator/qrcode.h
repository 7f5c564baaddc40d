// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace simulator {

/// The text as a QR code in an SVG document. Empty if the text is too long.
[[nodiscard]] QByteArray qrCodeSvg(const QByteArray &text);

} // namespace simulator
