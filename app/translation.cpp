// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/translation.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

namespace
{

// The translator belongs to the application.
bool installFile(const QString &name, const QString &folder, const QLocale &locale)
{
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    return translator->load(locale, name, QStringLiteral("_"), folder)
           && QCoreApplication::installTranslator(translator.release());
}

} // namespace

QString translationFolder()
{
    return QDir(QCoreApplication::applicationDirPath())
        .filePath(QStringLiteral(ZORAVEL_TRANSLATIONS));
}

void installTranslation(const QString &folder, const QLocale &locale)
{
    // Qt's texts alone would mix two languages in one window.
    if (installFile(QStringLiteral("zoravel"), folder, locale))
        installFile(QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath),
                    locale);
}
