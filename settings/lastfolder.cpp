// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/lastfolder.h"

#include <QDir>
#include <QFileInfo>
#include <QLatin1String>
#include <QSettings>

namespace
{

constexpr QLatin1StringView organisation("Tarnwick Institute");
constexpr QLatin1StringView application("ZORAVEL");
constexpr QLatin1StringView lastFolderKey("lastOpenFolder");

} // namespace

QString lastFolder()
{
    const QSettings settings(organisation, application);
    return settings.value(lastFolderKey, QDir::homePath()).toString();
}

void setLastFolder(const QString &filePath)
{
    QSettings settings(organisation, application);
    settings.setValue(lastFolderKey, QFileInfo(filePath).absolutePath());
}
