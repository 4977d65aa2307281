// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

// The SVG text without anything outside of it that Qt would fetch: style sheets and pictures in
// files, entities, scripts. Pictures inside it stay if decodePicture() accepts them. Empty if the
// text is no SVG, is nested too deeply, or draws too many elements through "use".
[[nodiscard]] QByteArray ownSvg(const QByteArray &text);
