// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QSize>

#include <optional>

// The size of the picture in the bytes of a PNG file if these are sound to the last pixel: chunks,
// their checksums, the compressed data and the lines in them. Decoding such a picture succeeds, but
// takes twenty times as long. Nothing for everything else, which is not to say that it cannot be
// decoded: pictures of more than 4 million pixels, interlaced ones and other formats among it.
[[nodiscard]] std::optional<QSize> soundPngSize(QByteArrayView bytes);
