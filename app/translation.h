// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLocale;
class QString;

// The folder in which the installed program has its translations.
[[nodiscard]] QString translationFolder();

// Has the application show its texts, and the toolkit's, in the language of the locale, if the
// folder has a translation into it; changes nothing if not. Numbers and files are the same in every
// language. Call it before there are widgets.
void installTranslation(const QString &folder, const QLocale &locale);
