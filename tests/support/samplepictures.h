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

// A small picture, of 13 by 9 pixels, in every form of the formats that are taken: as Qt
// writes them, and as other programs do.
[[nodiscard]] QList<SamplePicture> samplePictures();

// Colours and transparency of all kinds, on 37 by 23 pixels.
[[nodiscard]] QImage picturePattern(QImage::Format format);

// image as Qt writes it; empty if it cannot.
[[nodiscard]] QByteArray pictureFile(const QImage &image, const char *format, int quality = -1);

// Fills what is free of the heap, and what is taken from it from now on, with byte, where that can
// be done (glibc, without a sanitizer). Memory that is read before it is written shows so.
void dirtyHeap(unsigned char byte);
