// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTest>

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    QCOMPARE(file.write(bytes), bytes.size());
}

void writeFile(const QString &path, const QJsonObject &object)
{
    writeFile(path, QJsonDocument(object).toJson());
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        QTest::qFail(qPrintable(QStringLiteral("cannot read ") + path), __FILE__, __LINE__);
    return file.readAll();
}

QJsonObject fileObject(const QString &path)
{
    return QJsonDocument::fromJson(fileBytes(path)).object();
}

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}
