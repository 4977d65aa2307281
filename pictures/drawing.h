// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>

// Whether bytes begin like an SVG file, compressed or not.
[[nodiscard]] bool isDrawing(QByteArrayView bytes);

// The picture of an SVG file at its own size, which fits() must accept; a null image if it is none,
// or if drawing it would take too much time or memory. Everything outside the file that it refers
// to is left out: files, addresses, style sheets, scripts. Needs a QGuiApplication.
[[nodiscard]] QImage decodeDrawing(const QByteArray &bytes, bool (*fits)(QSize));
