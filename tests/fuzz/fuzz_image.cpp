// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/invariant.h"
#include "pictures/picture.h"
#include "support/samplepictures.h"

// Any bytes as an image file: refused, or a picture that is small enough to be kept, that is the
// same whatever was in the memory before, and that keeps every pixel through as many saves as one
// likes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr qint64 mostPixels = 64'000'000;
    constexpr qint64 mostBytes = qint64(128) * 1024 * 1024;
    dirtyHeap(0x35);
    const QImage image = decodePicture(bytesOf(data, size));
    dirtyHeap(0xca);
    REQUIRE_EQUAL(decodePicture(bytesOf(data, size)), image);
    REQUIRE(isSamePicture(image, image));
    if (image.isNull()) {
        REQUIRE(encodePng(image).isEmpty());
        return 0;
    }
    REQUIRE(qint64(image.width()) * image.height() <= mostPixels);
    REQUIRE(image.sizeInBytes() <= mostBytes);
    if (!canBeReloaded(image))
        return 0;

    const QByteArray file = encodePng(image);
    REQUIRE(!file.isEmpty());
    const QImage again = decodePicture(file);
    REQUIRE_EQUAL(again.size(), image.size());
    REQUIRE(isSamePicture(again, image));
    REQUIRE(isSamePicture(image, again));
    REQUIRE_EQUAL(encodePng(again), file);
    return 0;
}
