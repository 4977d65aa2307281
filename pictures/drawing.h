// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>

// Whether bytes begin as an SVG file may, compressed or not.
[[nodiscard]] bool isDrawing(QByteArrayView bytes);

// What an SVG file shows at its own size, which fits() must take; a null image if it is none, or if
// drawing it would take too much time or memory. Everything that it refers to and does not hold
// itself is left out: files, addresses, style sheets, scripts. Needs a QGuiApplication.
[[nodiscard]] QImage decodeDrawing(const QByteArray &bytes, bool (*fits)(QSize));
