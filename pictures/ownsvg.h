// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

// The SVG text without everything that it refers to outside of itself, which Qt would fetch: style
// sheets and pictures in files, entities, scripts. Pictures within it are kept if decodePicture()
// takes them. Empty if the text is no SVG, nested too deeply, or says with "use" to draw things too
// often.
[[nodiscard]] QByteArray ownSvg(const QByteArray &text);
