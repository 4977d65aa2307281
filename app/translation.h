// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QLocale;
class QString;

// The folder of the installed program's translations.
[[nodiscard]] QString translationFolder();

// Shows the texts of the application and of Qt in the language of the locale, if the folder has a
// translation into it. Numbers and files are the same in every language. Call it before there are
// widgets.
void installTranslation(const QString &folder, const QLocale &locale);
