// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/jsonfile.h"
#include "spectrum/assaved.h"
#include "support/files.h"
#include "testconsole.h"
#include "testfiles.h"

#include <QDir>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QByteArray loose = R"({"Type": "Species v1", "Species": {"Name": "x"},
    "Dataset2": {"Title": "two", "E": [1, 2], "I": [3, 4]}})";

} // namespace

// zoravel format.
class TestCliFormat : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir::setCurrent(m_folder->path());
        writeFile(QStringLiteral("a.json"), loose);
    }

#ifdef Q_OS_LINUX
    void aFileThatSaysItIsEmptyAndNeverEndsIsTooLarge()
    {
        TestConsole console;
        QCOMPARE(console.run({"format", "/proc/self/pagemap"}), 3);
        QCOMPARE(console.errors, "zoravel: /proc/self/pagemap: too large\n");
    }
#endif

    void aFileIsWrittenAsTheEditorSavesIt()
    {
        TestConsole console;
        QCOMPARE(console.run({"format", "a.json"}), 0);
        QCOMPARE(console.errors, "");
        QCOMPARE(console.output, saved(loose));
        QCOMPARE(fileBytes(QStringLiteral("a.json")), loose);
    }

    void aSpectrumFileIsToo()
    {
        writeFile(QStringLiteral("s.json"), R"({"Type": "Spectrum v1", "E": [1], "I": [2]})");
        TestConsole console;
        QCOMPARE(console.run({"format", "s.json"}), 0);
        const QJsonObject object = QJsonDocument::fromJson(console.output).object();
        QCOMPARE(object[QLatin1String("Type")].toString(), QStringLiteral("Spectrum v1"));
        QCOMPARE(object.size(), 16);
    }

    void checkNamesTheFilesThatWouldChange()
    {
        writeFile(QStringLiteral("b.json"), saved(loose));
        TestConsole console;
        QCOMPARE(console.run({"format", "--check", "."}), 1);
        QCOMPARE(console.output, "./a.json\n");
        QCOMPARE(fileBytes(QStringLiteral("a.json")), loose);
        QCOMPARE(console.run({"format", "--check", "b.json"}), 0);
        QCOMPARE(console.output, "");
    }

    // Qt encodes the pictures: if its encoder changes, run scripts/make-examples again.
    void theExamplesAreWhatTheEditorSaves()
    {
        TestConsole console;
        QCOMPARE(console.run({"format", "--check", ZORAVEL_EXAMPLES}), 0);
        QCOMPARE(console.output + console.errors, "");
    }

    void inPlaceWritesWhatChangesAndNothingElse()
    {
        writeFile(QStringLiteral("b.json"), saved(loose));
        QFile b(QStringLiteral("b.json"));
        const QDateTime old(QDate(2001, 1, 1), QTime(1, 1), Qt::UTC);
        QVERIFY(b.open(QIODevice::ReadWrite) && b.setFileTime(old, QFile::FileModificationTime));
        b.close();
        TestConsole console;
        QCOMPARE(console.run({"format", "-i", "."}), 0);
        QCOMPARE(console.output + console.errors, "");
        QCOMPARE(fileBytes(QStringLiteral("a.json")), saved(loose));
        QCOMPARE(QFileInfo(b).lastModified(), old);
        QCOMPARE(console.run({"format", "--check", "."}), 0);
    }

    void inPlaceLosesNothingUnlessToldTo_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const auto row = [](const char *name, const QByteArray &members) {
            QTest::newRow(name) << QByteArray("{\"Type\": \"Species v1\", " + members + '}');
        };
        row("lengths differ", R"("Dataset1": {"E": [1, 2], "I": [3]})");
        row("no arrays", R"("Dataset1": {"E": 1, "I": 3})");
        row("no array of objects", R"("Dataset1": {"Spectrum": {"E": 1, "I": 3}})");
        row("more in points", R"("Dataset1": {"Spectrum": [{"E": 1, "I": 3, "Error": 2}]})");
        row("digits", R"("Dataset1": {"E": [1.23456789], "I": [3]})");
        row("key", R"("Species": {"Note": "n"})");
        row("key written again", R"("Species": {"VIE": "9.1", "VIE": "9.2"})");
        row("number for text", R"("Species": {"AIE": 9.5})");
        row("tag", R"("Species": {"Name": "a<b>c</b>"})");
    }
    void inPlaceLosesNothingUnlessToldTo()
    {
        QFETCH(QByteArray, bytes);
        writeFile(QStringLiteral("l.json"), bytes);
        TestConsole console;
        QCOMPARE(console.run({"format", "-i", "l.json", "a.json"}), 1);
        QCOMPARE(fileBytes(QStringLiteral("l.json")), bytes);
        QCOMPARE(fileBytes(QStringLiteral("a.json")), saved(loose));
        QVERIFY2(console.errors.startsWith("zoravel: l.json: not kept: "),
                 console.errors.constData());
        QVERIFY(console.errors.endsWith(
            "zoravel: l.json: left as it is: --lossy writes it nevertheless\n"));
        const QByteArray losses =
            console.errors.first(console.errors.lastIndexOf("zoravel: l.json"));
        QCOMPARE(console.run({"format", "-i", "--lossy", "l.json"}), 0);
        QCOMPARE(console.errors, losses);
        QCOMPARE(fileBytes(QStringLiteral("l.json")), saved(bytes));
    }

    void severalFilesAreNotMixedUp()
    {
        writeFile(QStringLiteral("b.json"), loose);
        TestConsole console;
        QCOMPARE(console.run({"format", "."}), 2);
        QCOMPARE(console.output, "");
    }

    void aFolderWithoutAnyFileIsSaid()
    {
        QVERIFY(QDir().mkdir(QStringLiteral("empty")));
        TestConsole console;
        for (const char *option : {"--check", "--in-place"}) {
            QCOMPARE(console.run({"format", option, "empty"}), 3);
            QCOMPARE(console.errors, "zoravel: empty: there is no species file in it\n");
        }
    }

    void aDatabaseInAFolderIsPassedOver()
    {
        writeFile(QStringLiteral("a.json"), saved(loose));
        writeFile(QStringLiteral("d.json"), R"({"Type": "Database v1"})");
        TestConsole console;
        QCOMPARE(console.run({"format", "--check", "."}), 0);
        QCOMPARE(console.output + console.errors, "");
    }

    void aValueThatIsWrittenAgainBelowIsSaidToBeLost()
    {
        writeFile(QStringLiteral("l.json"),
                  R"({"Type": "Species v1", "Species": {"VIE": "9.1", "VIE": "9.2"}})");
        TestConsole console;
        QCOMPARE(console.run({"format", "l.json"}), 0);
        QCOMPARE(console.errors,
                 "zoravel: l.json: not kept: /Species/VIE: the key is written again below\n");
        QVERIFY(console.output.contains("\"VIE\": \"9.2\""));
    }

    void whatGetsLostOfASpectrumFileIsSaidWithItsPlace()
    {
        writeFile(QStringLiteral("s.json"), R"({"Type": "Spectrum v1", "Title": "a<b>c</b>",
            "E": [1.23456789, 2], "I": [1, 2]})");
        TestConsole console;
        QCOMPARE(console.run({"format", "s.json"}), 0);
        QCOMPARE(console.errors,
                 "zoravel: s.json: not kept: Spectrum: digits behind the sixth of 1 of 2 points\n"
                 "zoravel: s.json: not kept: /Title: \"a<b>c</b>\" becomes \"ac\"\n");
        writeFile(QStringLiteral("t.json"), R"({"Type": "Spectrum v1", "E": [1, 2], "I": [1]})");
        QCOMPARE(console.run({"format", "t.json"}), 0);
        QCOMPARE(console.errors,
                 "zoravel: t.json: not kept: Spectrum: 2 energies and 1 intensities\n");
    }

    void whatIsNotSpeciesOrSpectrumIsRefused()
    {
        writeFile(QStringLiteral("d.json"), R"({"Type": "Database v1"})");
        TestConsole console;
        QCOMPARE(console.run({"format", "-i", "d.json", "a.json", "gone.json"}), 3);
        QCOMPARE(console.errors, "zoravel: d.json: neither a species nor a spectrum file\n"
                                 "zoravel: gone.json: no such file\n");
        QCOMPARE(fileBytes(QStringLiteral("d.json")), R"({"Type": "Database v1"})");
        QCOMPARE(fileBytes(QStringLiteral("a.json")), saved(loose));
    }

    void controlCharactersOfKeysDoNotReachTheTerminal()
    {
        writeFile(QStringLiteral("a.json"), "{\"Type\": \"Species v1\", \"\\u001b[31m\": 1}");
        TestConsole console;
        QCOMPARE(console.run({"format", "--check", "a.json"}), 1);
        QCOMPARE(console.errors, "zoravel: a.json: not kept: /\\x1b[31m: 1\n");
    }

    void whatGetsLostIsSaid_data()
    {
        QTest::addColumn<QByteArray>("members");
        QTest::addColumn<QByteArray>("loss");
        const auto row = [](const char *members, const char *loss) {
            QTest::newRow(members) << QByteArray(members) << QByteArray(loss);
        };
        row(R"("Species": {"Note": "n"})", "/Species/Note: \"n\"");
        row(R"("Species": {"AIE": 9.5})", "/Species/AIE: 9.5 is read as \"\"");
        row(R"("Species": {"Name": "a<b>c</b>"})", "/Species/Name: \"a<b>c</b>\" becomes \"ac\"");
        row(R"("Species": [])", "/Species: an array");
        row(R"("Species": {"StructuralFormula": "AAAA"})",
            "/Species/StructuralFormula: a picture that cannot be decoded");
        row(R"("Species": {"Aliases": "a\nb"})", "");
        row(R"("Other": [1])", "/Other: an array");
        row(R"("Dataset1": {"E": [1.23456789, 2], "I": [1, 2]})",
            "/Dataset1: digits behind the sixth of 1 of 2 points");
        row(R"("Dataset1": {"E": [1, 2], "I": [1]})", "/Dataset1: 2 energies and 1 intensities");
        row(R"("Dataset1": {"Spectrum": [{"E": 1, "I": 2}]})", "");
        row(R"("Dataset1": {"Spectrum": [], "E": [1], "I": [2]})",
            "/Dataset1: the points under E and I, besides those under Spectrum");
        row(R"("Dataset1": {"AIE": "9"})", "/Dataset1/AIE: \"9\"");
        row(R"("Dataset1": 7)", "/Dataset1: 7");
        row(R"("Dataset1": {"E": ["1"], "I": [2]})", "/Dataset1: 1 values that are no numbers");
    }
    void whatGetsLostIsSaid()
    {
        QFETCH(QByteArray, members);
        QFETCH(QByteArray, loss);
        const QByteArray bytes = "{\"Type\": \"Species v1\", " + members + '}';
        writeFile(QStringLiteral("l.json"), bytes);
        TestConsole console;
        QCOMPARE(console.run({"format", "l.json"}), 0);
        QCOMPARE(console.errors,
                 loss.isEmpty() ? QByteArray() : "zoravel: l.json: not kept: " + loss + '\n');
        QCOMPARE(console.output, saved(bytes));
    }

private:
    static QByteArray saved(const QByteArray &bytes)
    {
        const QJsonObject object = QJsonDocument::fromJson(bytes).object();
        return QJsonDocument(asSavedSpeciesFile(object)).toJson(QJsonDocument::Indented);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(TestCliFormat)
#include "tst_cli_format.moc"
