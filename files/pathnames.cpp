// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/pathnames.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

namespace
{

constexpr QLatin1Char separator('/');
constexpr QLatin1String parent("..");

} // namespace

bool hasParentStep(const QString &path)
{
    return path.split(separator).contains(parent);
}

QString withoutParentSteps(const QString &path)
{
    const QStringList steps = path.split(separator);
    const qsizetype last = steps.lastIndexOf(parent);
    if (last < 0)
        return path;
    const QFileInfo folder(steps.first(last + 1).join(separator));
    const QString canonical = folder.canonicalFilePath();
    const QString rest = steps.sliced(last + 1).join(separator);
    if (canonical.isEmpty())
        return path;
    return rest.isEmpty() ? canonical : QDir(canonical).filePath(rest);
}
