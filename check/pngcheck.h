// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QSize>

#include <optional>

// The size of the picture in the bytes of a PNG file whose chunks, checksums, compressed data and
// lines are all correct. Decoding it would succeed, but takes twenty times as long. Nothing for
// anything else, which may still be decodable: pictures of more than 4 million pixels, interlaced
// ones, other formats.
[[nodiscard]] std::optional<QSize> soundPngSize(QByteArrayView bytes);
