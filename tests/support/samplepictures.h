// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

// A good picture file.
struct SamplePicture {
    QByteArray name;   // of the form, "BMP, top-down"
    QByteArray format; // as Qt calls it
    QByteArray file;
    QImage image; // its pixels; null where the form changes them
};

// A small picture of 13 by 9 pixels in all supported formats and forms, as Qt and other programs
// write them.
[[nodiscard]] QList<SamplePicture> samplePictures();

// Colours and transparency of all kinds, on 37 by 23 pixels.
[[nodiscard]] QImage picturePattern(QImage::Format format);

// image as Qt writes it; empty if it cannot.
[[nodiscard]] QByteArray pictureFile(const QImage &image, const char *format, int quality = -1);

// Fills the free heap and later allocations with byte, if possible (glibc, without a sanitizer), so
// that memory read before it is written shows.
void dirtyHeap(unsigned char byte);
