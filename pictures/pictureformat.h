// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QByteArrayView>

// Qt's names of the formats that a picture file may have, judged by its first bytes, the likeliest
// first. An empty name leaves the choice to Qt. None if the file is cut off or damaged as far as
// that shows without decoding. Qt may have no decoder for a format.
[[nodiscard]] QByteArrayList pictureFormats(QByteArrayView bytes);
