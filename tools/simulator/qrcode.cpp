// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "simulator/qrcode.h"

#include <qrencode.h>

#include <memory>

namespace simulator {
namespace {

    constexpr int quietModules = 4; // the white border that scanners need
    constexpr int modulePixels = 8;

} // namespace

QByteArray qrCodeSvg(const QByteArray &text)
{
    constexpr int smallestVersion = 0;
    constexpr int caseSensitive = 1;
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> code(
        QRcode_encodeString(text.constData(), smallestVersion, QR_ECLEVEL_M, QR_MODE_8,
                            caseSensitive),
        &QRcode_free);
    if (!code)
        return {};
    // One path for all modules: no gaps show where two of them meet.
    QByteArray path;
    for (int i = 0; i < code->width * code->width; ++i) {
        if ((code->data[i] & 1) != 0)
            path += 'M' + QByteArray::number(i % code->width + quietModules) + ' '
                + QByteArray::number(i / code->width + quietModules) + "h1v1h-1z";
    }
    const int modules = code->width + 2 * quietModules;
    const QByteArray side = QByteArray::number(modules);
    const QByteArray pixels = QByteArray::number(modules * modulePixels);
    return R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" + pixels + R"(" height=")" + pixels
        + R"(" viewBox="0 0 )" + side + ' ' + side + R"("><rect width=")" + side + R"(" height=")"
        + side + R"(" fill="#fff"/><path d=")" + path + R"("/></svg>)";
}

} // namespace simulator
