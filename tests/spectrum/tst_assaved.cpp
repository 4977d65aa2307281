// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/assaved.h"

#include "files/jsonfile.h"
#include "pictures/picture.h"
#include "species/speciesfile.h"
#include "spectrum/spectrumfile.h"
#include "support/warnings.h"
#include "testfiles.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;

namespace
{

QJsonObject withoutPicture(QJsonObject file)
{
    QJsonObject species = file.value(speciesKey).toObject();
    species.remove(u"StructuralFormula"_s);
    file.insert(speciesKey, species);
    return file;
}

QImage pictureOf(const QJsonObject &file)
{
    const QJsonValue text = file.value(speciesKey).toObject().value(u"StructuralFormula"_s);
    return decodePicture(QByteArray::fromBase64(text.toString().toUtf8()));
}

QJsonObject example(const QString &name)
{
    return readJsonObject(QStringLiteral(ZORAVEL_EXAMPLES "/") + name).value_or(QJsonObject());
}

} // namespace

// Runs without a display and without the application object of programs that have one.
class TestAsSaved : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void examplesStayAsTheyAre()
    {
        const QStringList names = QDir(QStringLiteral(ZORAVEL_EXAMPLES)).entryList({u"*.json"_s});
        QVERIFY(names.size() >= 8);
        for (const QString &name : names) {
            const QJsonObject file = example(name);
            const QJsonObject saved = asSavedSpeciesFile(file);
            QCOMPARE(withoutPicture(saved), withoutPicture(file));
            QVERIFY(isSamePicture(pictureOf(saved), pictureOf(file)));
        }
    }

    void whatTheRecordsDoNotKnowIsGone()
    {
        QJsonObject file = example(u"water.json"_s);
        file.insert(u"Remark"_s, u"x"_s);
        file.insert(u"dataset9"_s, QJsonObject());
        QCOMPARE(withoutPicture(asSavedSpeciesFile(file)),
                 withoutPicture(example(u"water.json"_s)));
    }

    void spectraAreNumberedAnewInTheOrderOfTheirKeys()
    {
        QJsonObject file{{typeKey, speciesFileType}};
        for (const QString &key : {u"Dataset2"_s, u"Dataset10"_s, u"Dataset007"_s, u"Dataset"_s})
            file.insert(key, QJsonObject{{u"Title"_s, key}});
        const QJsonObject saved = asSavedSpeciesFile(file);
        const auto title = [&](const QString &key) {
            return saved.value(key).toObject().value(u"Title"_s).toString();
        };
        QCOMPARE(datasetKeys(saved), QStringList({u"Dataset1"_s, u"Dataset2"_s, u"Dataset3"_s}));
        QCOMPARE(title(u"Dataset1"_s), u"Dataset007"_s);
        QCOMPARE(title(u"Dataset2"_s), u"Dataset10"_s);
        QCOMPARE(title(u"Dataset3"_s), u"Dataset2"_s);
    }

    void pointsKeepSixSignificantDigits()
    {
        const QJsonObject file{{typeKey, spectrumFileType},
                               {u"E"_s, QJsonArray{12.34567891}},
                               {u"I"_s, QJsonArray{0.000015}}};
        const QJsonObject saved = asSavedSpectrumFile(file);
        QCOMPARE(saved.value(u"E"_s).toArray(), QJsonArray{12.3457});
        QCOMPARE(saved.value(u"I"_s).toArray(), QJsonArray{1.5e-5});
        QVERIFY(hasType(saved, spectrumFileType));
    }

    void anyThreadWillDo()
    {
        const QJsonObject file = example(u"benzene.json"_s);
        QJsonObject there;
        std::thread([&] { there = asSavedSpeciesFile(file); }).join();
        QCOMPARE(there, asSavedSpeciesFile(file));
    }
};

QTEST_GUILESS_MAIN(TestAsSaved)
#include "tst_assaved.moc"
