// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/checks.h"
#include "support/files.h"
#include "testconsole.h"
#include "testfiles.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace
{

const QByteArray badCas = R"({
    "Type": "Species v1",
    "Species": {"CAS": "106-97-3"}
}
)";

} // namespace

// zoravel check and zoravel explain.
class TestCliCheck : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_folder->path()));
        QVERIFY(QDir().mkdir(QStringLiteral("sub")));
        writeFile(QStringLiteral("b.json"), badCas);
        writeFile(QStringLiteral("sub/a.json"), badCas);
        writeFile(QStringLiteral("sub/note.txt"), "x");
    }
    void cleanup() { QDir::setCurrent(m_before); }

    void theExamplesGiveNoOutput()
    {
        TestConsole console;
        QCOMPARE(console.run({"check", ZORAVEL_EXAMPLES}), 0);
        QCOMPARE(console.output, QByteArray());
        QCOMPARE(console.errors, QByteArray());
    }

    void findingsAreLinesAndThenTotals()
    {
        TestConsole console;
        QCOMPARE(console.run({"check", "--only=cas-check-digit", "b.json", "sub"}), 1);
        QCOMPARE(console.output,
                 QByteArray("b.json:3:24: error: CAS number 106-97-3 has check digit 3, expected "
                            "8 [cas-check-digit]\n"
                            "sub/a.json:3:24: error: CAS number 106-97-3 has check digit 3, "
                            "expected 8 [cas-check-digit]\n"
                            "2 errors, 0 warnings and 0 notes in 2 files\n"));
    }

    void theStatusFollowsFailOn_data()
    {
        QTest::addColumn<QByteArray>("level");
        QTest::addColumn<int>("ofError");
        QTest::addColumn<int>("ofWarning");
        QTest::addColumn<int>("ofNote");
        QTest::newRow("error") << QByteArray("error") << 1 << 0 << 0;
        QTest::newRow("warning") << QByteArray("warning") << 1 << 1 << 0;
        QTest::newRow("note") << QByteArray("note") << 1 << 1 << 1;
        QTest::newRow("never") << QByteArray("never") << 0 << 0 << 0;
    }

    void theStatusFollowsFailOn()
    {
        QFETCH(QByteArray, level);
        const QByteArray option = "--fail-on=" + level;
        TestConsole console;
        QTEST(console.run({"check", option, "--only=cas-check-digit", "b.json"}), "ofError");
        QTEST(console.run({"check", option, "--only=same-cas", "b.json", "sub"}), "ofWarning");
        QTEST(console.run({"check", option, "--only=would-change-on-save", "b.json"}), "ofNote");
        QVERIFY(!console.output.isEmpty());
    }

    void whatIsMilderIsLeftOut()
    {
        TestConsole console;
        QCOMPARE(console.run({"check", "--min-severity=warning", "--fail-on=note", "--only",
                              "would-change-on-save", "b.json"}),
                 0);
        QCOMPARE(console.output, QByteArray());
    }

    void checksAreChosenById()
    {
        TestConsole console;
        QCOMPARE(console.run({"check", "--skip=cas-check-digit,would-change-on-save", "b.json"}),
                 0);
        QCOMPARE(console.output, QByteArray());
        QCOMPARE(console.run({"check", "--only=cas-chek-digit", "b.json"}), 2);
        QVERIFY(console.errors.contains("did you mean cas-check-digit?"));
    }

    void overridesSilenceAndAreReportedIfUnused()
    {
        writeFile(QStringLiteral("known"), "b.json cas-check-digit printed like this\n"
                                           "c.json cas-form nothing\n");
        TestConsole console;
        QCOMPARE(
            console.run({"check", "--overrides=known", "--skip=would-change-on-save", "b.json"}),
            0);
        QCOMPARE(console.output,
                 QByteArray("known:2:1: warning: Nothing was found that this overrides: c.json "
                            "cas-form nothing [unused-override]\n"
                            "0 errors, 1 warning and 0 notes in 1 file\n"));
        writeFile(QStringLiteral("known"), "b.json cas-check-digit\n");
        QCOMPARE(console.run({"check", "--overrides=known", "b.json"}), 2);
        QCOMPARE(console.errors, QByteArray("zoravel: known:1: the reason is missing\n"));
        QCOMPARE(console.run({"check", "--overrides=gone", "b.json"}), 3);
    }

    void listsOfFilesAreReadFromFilesAndFromInput()
    {
        TestConsole console;
        writeFile(QStringLiteral("list"), "b.json\nsub\n\n");
        QCOMPARE(console.run({"check", "--files-from", "list", "--only=cas-check-digit"}), 1);
        QVERIFY(console.output.endsWith("in 2 files\n"));
        console.input = QByteArray("b.json\0sub/a.json\0", 18);
        QCOMPARE(console.run({"check", "-0", "--files-from", "-", "--only=cas-check-digit"}), 1);
        QVERIFY(console.output.endsWith("in 2 files\n"));
        QCOMPARE(console.run({"check", "--files-from", "gone"}), 3);
    }

    void aListFromWindowsIsRead()
    {
        TestConsole console;
        console.input = "b.json\r\nsub/a.json\r\n";
        QCOMPARE(console.run({"check", "--only=cas-check-digit", "--files-from", "-"}), 1);
        QVERIFY(console.output.endsWith("2 errors, 0 warnings and 0 notes in 2 files\n"));
        console.input = QByteArray("b.json\r\0", 8);
        QCOMPARE(console.run({"check", "-0", "--files-from", "-"}), 3);
        QVERIFY(console.output.startsWith("b.json\\x0d:1:1: error: The file cannot be read"));
    }

    void aHyphenIsStandardInput()
    {
        TestConsole console;
        console.input = badCas;
        QCOMPARE(console.run({"check", "-", "--only=cas-check-digit"}), 1);
        QVERIFY(console.output.startsWith("<stdin>:3:24: error: "));
    }

    void aFileThatIsNamedTwiceIsCheckedOnce()
    {
        TestConsole console;
        QCOMPARE(console.run({"check", "b.json", "./b.json", "sub/../b.json", "--only=same-cas"}),
                 0);
        QCOMPARE(console.output, QByteArray());
    }

    void whatCannotBeReadGivesThree()
    {
        TestConsole console;
        QCOMPARE(console.run({"check", "gone.json"}), 3);
        QVERIFY(console.output.startsWith(
            "gone.json:1:1: error: The file cannot be read: it does not exist [unreadable]\n"));
    }

    void whatCannotBeReadIsSaidWhateverIsAskedFor_data()
    {
        QTest::addColumn<QByteArrayList>("options");
        QTest::newRow("another check only") << QByteArrayList{"--only", "cas-form"};
        QTest::newRow("skipped") << QByteArrayList{"--skip=unreadable,json-syntax"};
        QTest::newRow("never fails") << QByteArrayList{"--only=cas-form", "--fail-on=never"};
        QTest::newRow("as a report") << QByteArrayList{"--only=cas-form", "--format=github"};
    }

    void whatCannotBeReadIsSaidWhateverIsAskedFor()
    {
        QFETCH(QByteArrayList, options);
        TestConsole console;
        QCOMPARE(console.run(QByteArrayList{"check", "gone.json"} + options), 3);
        QVERIFY(console.output.contains("The file cannot be read: it does not exist"));
        // In a file that is no JSON none of the requested checks can run.
        writeFile(QStringLiteral("broken.json"), "{\"Type\": \"Species v1\"");
        QCOMPARE(console.run(QByteArrayList{"check", "broken.json"} + options), 3);
        QVERIFY(console.output.contains("The file ends inside an object"));
        QCOMPARE(console.run(QByteArrayList{"check", "gone.json", "broken.json"} + options), 3);
        QVERIFY(console.output.contains("cannot be read"));
        QVERIFY(console.output.contains("inside an object"));
        writeFile(QStringLiteral("broken.json"), "{\"Type\": \"\xe9\"}");
        QCOMPARE(console.run(QByteArrayList{"check", "--only=cas-form", "broken.json"}), 3);
        QVERIFY(console.output.contains("is not UTF-8"));
        writeFile(QStringLiteral("broken.json"), "{\"Type\": 1e999}");
        QCOMPARE(console.run(QByteArrayList{"check", "--only=cas-form", "broken.json"}), 3);
        QVERIFY(console.output.contains("too large for a double"));
    }

    void whatCannotBeReadIsNotOverridden()
    {
        writeFile(QStringLiteral("known"), "gone.json unreadable it comes back\n");
        TestConsole console;
        QCOMPARE(console.run({"check", "--overrides=known", "gone.json"}), 2);
        QCOMPARE(console.errors, QByteArray("zoravel: known:1: what cannot be read is always "
                                            "said\n"));
        writeFile(QStringLiteral("known"), "b.json json-syntax it is so\n");
        QCOMPARE(console.run({"check", "--overrides=known", "b.json"}), 1);
    }

    void aLinkInAFolderThatLeadsNowhereIsSaid()
    {
        QVERIFY(QFile::link(QStringLiteral("gone.json"), QStringLiteral("sub/b.json")));
        TestConsole console;
        QCOMPARE(console.run({"check", "--only=cas-form", "sub"}), 3);
        QCOMPARE(console.output,
                 QByteArray("sub/b.json:1:1: error: The file cannot be read: it is a link that "
                            "leads nowhere [unreadable]\n"
                            "1 error, 0 warnings and 0 notes in 2 files\n"));
    }

    void nothingToCheckIsWrongUsage()
    {
        TestConsole console;
        QCOMPARE(console.run({"check"}), 2);
        QCOMPARE(console.run({"check", "--jobs=0", "b.json"}), 2);
        QCOMPARE(console.run({"check", "--format=xml", "b.json"}), 2);
        QCOMPARE(console.run({"check", "--fail-on=sometimes", "b.json"}), 2);
        QVERIFY(console.errors.contains("zoravel check: "));
        QCOMPARE(console.output, QByteArray());
    }

    void aFolderWithoutAnyFileDoesNotPass()
    {
        QVERIFY(QDir().mkdir(QStringLiteral("empty")));
        TestConsole console;
        const QByteArray error = "zoravel: empty: there is no species file in it\n";
        QCOMPARE(console.run({"check", "empty"}), 3);
        QCOMPARE(console.output, QByteArray());
        QCOMPARE(console.errors, error);
        QCOMPARE(console.run({"check", "--fail-on=never", ZORAVEL_EXAMPLES, "empty"}), 3);
        QCOMPARE(console.errors, error);
        console.input = "empty\n";
        QCOMPARE(console.run({"check", "--files-from", "-"}), 3);
        QCOMPARE(console.errors, error);
        QCOMPARE(console.run({"check", "--format=json", "empty"}), 3);
        const QJsonObject root = QJsonDocument::fromJson(console.output).object();
        QVERIFY(root.value(QLatin1String("findings")).isArray());
        QCOMPARE(console.run({"check", "--only=cas-check-digit", "b.json", "empty"}), 3);
        QVERIFY(console.output.startsWith("b.json:3:24: error: "));
    }

    void aFileThatIsCutOffIsShownWithItsLastCharacter()
    {
        writeFile(QStringLiteral("cut.json"), "{\n    \"Type\": \"Species v1\",\n\n");
        TestConsole console;
        QCOMPARE(console.run({"check", "cut.json"}), 1);
        QCOMPARE(console.output,
                 QByteArray("cut.json:2:25: error: The file ends inside an object [json-syntax]\n"
                            "        \"Type\": \"Species v1\",\n"
                            "                            ^\n"
                            "1 error, 0 warnings and 0 notes in 1 file\n"));
    }

    void ofAFileOfBlanksThereIsNoLineToShow()
    {
        TestConsole console;
        const QByteArray totals = "1 error, 0 warnings and 0 notes in 1 file\n";
        writeFile(QStringLiteral("e.json"), "");
        QCOMPARE(console.run({"check", "e.json"}), 1);
        QCOMPARE(console.output, "e.json:1:1: error: The file is empty [json-syntax]\n" + totals);
        writeFile(QStringLiteral("e.json"), "\n  \n");
        QCOMPARE(console.run({"check", "e.json"}), 1);
        QCOMPARE(console.output,
                 "e.json:1:1: error: There are only blanks in the file [json-syntax]\n" + totals);
    }

    void everyFormatIsWrittenAndJsonAlsoOfNothing()
    {
        TestConsole console;
        QCOMPARE(console.run({"check", "--format=json", ZORAVEL_EXAMPLES}), 0);
        const QJsonObject root = QJsonDocument::fromJson(console.output).object();
        QVERIFY(root.value(QLatin1String("findings")).isArray());
        QCOMPARE(
            root.value(QLatin1String("tool")).toObject().value(QLatin1String("version")).toString(),
            QStringLiteral(ZORAVEL_VERSION));
        QCOMPARE(console.run({"check", "--format=sarif", "b.json"}), 1);
        QVERIFY(!QJsonDocument::fromJson(console.output).isNull());
        QCOMPARE(console.run({"check", "--format=github", "b.json"}), 1);
        QVERIFY(
            console.output.startsWith("::error file=b.json,line=3,col=24,title=cas-check-digit::"));
    }

    void colourIsOnlyThereIfItIsAskedFor()
    {
        TestConsole console; // no terminal
        QCOMPARE(console.run({"check", "b.json"}), 1);
        QVERIFY(!console.output.contains('\x1b'));
        QCOMPARE(console.run({"check", "--color=always", "b.json"}), 1);
        QVERIFY(console.output.contains('\x1b'));
    }

    void explainKnowsEveryCheck()
    {
        TestConsole console;
        for (const CheckInfo &info : allChecks()) {
            QCOMPARE(console.run({"explain", info.id.data()}), 0);
            QVERIFY(console.output.startsWith(QByteArray(info.id.data()).append(": ")));
            for (const QByteArray &line : console.output.split('\n'))
                QVERIFY2(QString::fromUtf8(line).size() <= 100, line.constData());
            for (const char *part : {"\n  Mend: ", "\n  Example: "})
                QVERIFY(console.output.contains(part));
        }
        QCOMPARE(console.run({"explain"}), 0);
        QCOMPARE(console.output.count('\n'), qsizetype(checkCount));
        QCOMPARE(console.run({"explain", "cas"}), 2);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_before;
};

QTEST_GUILESS_MAIN(TestCliCheck)
#include "tst_cli_check.moc"
