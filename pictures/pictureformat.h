// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QByteArrayView>

// Qt's names of the formats that a picture file may have, by how it begins, the likeliest first. An
// empty name stands for what Qt finds itself. None if the file is cut off or damaged as far as its
// format can tell without decoding it. Whether Qt has a decoder is another question.
[[nodiscard]] QByteArrayList pictureFormats(QByteArrayView bytes);
