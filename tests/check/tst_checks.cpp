// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/checker.h"
#include "check/overrides.h"
#include "check/report.h"
#include "files/filebytes.h"
#include "support/warnings.h"
#include "testfiles.h"

#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <algorithm>
#include <variant>

using namespace Qt::StringLiterals;

namespace
{

const QString dataFolder = QStringLiteral(ZORAVEL_TEST_DATA "/bad");

// The day of the data.
CheckOptions optionsOf(const CheckSet &enabled = CheckSet().set())
{
    CheckOptions options;
    options.file.enabled = enabled;
    options.file.today = QDate(2026, 11, 21);
    return options;
}

QString idOf(Check check)
{
    return infoOf(check).id;
}

// All files in the folder and its subfolders, by name.
std::vector<CheckInput> filesIn(const QString &folder)
{
    QStringList names;
    QDirIterator files(folder, {u"*.json"_s}, QDir::Files | QDir::System,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        names.append(QDir(folder).relativeFilePath(files.next()));
    names.sort();
    std::vector<CheckInput> inputs;
    for (const QString &name : std::as_const(names))
        inputs.push_back({name, folder + u'/' + name, std::nullopt});
    return inputs;
}

QStringList idsOf(const QList<Finding> &findings)
{
    QStringList ids;
    for (const Finding &finding : findings)
        ids.append(idOf(finding.check));
    ids.removeDuplicates();
    return ids;
}

QList<Finding> findingsIn(const std::vector<CheckInput> &inputs, const QString &folder,
                          const CheckOptions &options)
{
    QList<Finding> findings = checkFiles(inputs, options);
    const auto overrides = readFileBytes(folder + u"/overrides"_s);
    if (overrides) {
        const auto parsed = parseOverrides(*overrides);
        applyOverrides(std::get<QList<Override>>(parsed), u"overrides"_s, findings);
        findings.removeIf([&](const Finding &finding) {
            return !options.file.enabled.test(std::size_t(finding.check));
        });
    }
    return findings;
}

// The faults in the data of one check: each bad file must give exactly its finding, each near miss
// none. Checks that compare files use all files of a group.
QStringList faultsOf(Check check, const CheckOptions &options)
{
    QStringList faults;
    const bool comparesFiles = check >= Check::SameCas;
    for (const bool isBad : {true, false}) {
        const QString folder = dataFolder + u'/' + idOf(check) + (isBad ? u"/bad"_s : u"/near"_s);
        const std::vector<CheckInput> inputs = filesIn(folder);
        if (inputs.empty())
            faults.append(u"no files in "_s + folder);
        std::vector<std::vector<CheckInput>> runs;
        if (comparesFiles)
            runs.push_back(inputs);
        for (const CheckInput &input : inputs) {
            if (!comparesFiles)
                runs.push_back({input});
        }
        for (const auto &run : runs) {
            const QList<Finding> findings = findingsIn(run, folder, options);
            const QStringList expected = isBad ? QStringList{idOf(check)} : QStringList();
            if (idsOf(findings) == expected)
                continue;
            faults.append(folder + u'/' + run.front().name + u": "_s
                          + QString::fromUtf8(textReport({findings, 1, {}}, false)));
        }
    }
    return faults;
}

} // namespace

class TestChecks : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void aBadFileGivesItsFindingAndANearMissNone_data()
    {
        QTest::addColumn<int>("check");
        for (const CheckInfo &info : allChecks())
            QTest::newRow(info.id.data()) << static_cast<int>(info.check);
    }

    void aBadFileGivesItsFindingAndANearMissNone()
    {
        QFETCH(int, check);
        const QStringList faults = faultsOf(static_cast<Check>(check), optionsOf());
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
    }

    // A file's findings are found at their own places in a database entry too, apart from those
    // about the file's layout and duplicates.
    void entriesOfADatabaseAreCheckedAsFilesAre()
    {
        static const QRegularExpression type(u",\\s*\"Type\": \"Species v1\"\\s*\\}\\s*$"_s);
        int compared = 0;
        for (const CheckInput &input : filesIn(dataFolder)) {
            QString text = QString::fromUtf8(readFileBytes(input.path).value_or(QByteArray()));
            if (!text.contains(type))
                continue;
            const auto foundIn = [](const QByteArray &bytes, int lines, const QString &prefix) {
                QStringList found;
                for (const Finding &finding : checkFiles({{u"a"_s, {}, bytes}}, optionsOf())) {
                    if (finding.check != Check::WouldChange && finding.check < Check::SameCas)
                        found.append(idOf(finding.check) + u' ' + finding.message + u' '
                                     + QString::number(finding.line - lines) + u' '
                                     + QString::number(finding.column) + u' '
                                     + finding.pointer.mid(prefix.size()));
                }
                return found;
            };
            const QStringList ofFile = foundIn(text.toUtf8(), 0, {});
            const QByteArray entry = text.replace(type, u"\n}"_s).toUtf8();
            QCOMPARE(foundIn("{\n\"Entry7\":\n" + entry + ",\"Type\": \"Database v1\"}", 2,
                             u"/Entry7"_s),
                     ofFile);
            compared += int(!ofFile.isEmpty());
        }
        QVERIFY(compared > 50);
    }

    void entriesOfADatabaseAreComparedWithEachOtherOnly()
    {
        const QByteArray entry = R"({"Species": {"Name": "Water"}})";
        const QByteArray database =
            "{\"Entry1\": " + entry + ",\n\"Entry2\": " + entry + ",\n\"Type\": \"Database v1\"}";
        const QByteArray file = R"({"Species": {"Name": "Water"}, "Type": "Species v1"})";
        CheckSet enabled;
        enabled.set(std::size_t(Check::SameName));
        const QList<Finding> findings =
            checkFiles({{u"a.json"_s, {}, file}, {u"db.json"_s, {}, database}}, optionsOf(enabled));
        QCOMPARE(findings.size(), 1);
        QCOMPARE(findings[0].pointer, u"/Entry2/Species/Name"_s);
        QCOMPARE(findings[0].message, u"Name Water stands in db.json:1:33, too"_s);
        QCOMPARE(findings[0].line, 2);
    }

    void anEntryHasNoType()
    {
        const QByteArray database = R"({"Entry1": {"Type": "Species v1"}, "Type": "Database v1"})";
        const QList<Finding> findings = checkFiles({{u"db.json"_s, {}, database}}, optionsOf());
        QCOMPARE(idsOf(findings), QStringList{u"unknown-key"_s});
        QCOMPARE(findings[0].pointer, u"/Entry1/Type"_s);
    }

    void aDatabaseWhoseFirstKeysAreOfAnotherFileIsADatabase()
    {
        const QByteArray database =
            R"({"Species": 1, "Entry1": {"Species": {"CAS": "1"}}, "Type": "Database v1"})";
        QCOMPARE(idsOf(checkFiles({{u"db.json"_s, {}, database}}, optionsOf())),
                 (QStringList{u"unknown-key"_s, u"cas-form"_s}));
        // A species file whose first keys are a database's is still no database.
        const QByteArray species =
            R"({"Header": 1, "Species": {"CAS": "1"}, "Type": "Species v1"})";
        QVERIFY(
            idsOf(checkFiles({{u"a.json"_s, {}, species}}, optionsOf())).contains(u"cas-form"_s));
    }

    void aDatabaseThatIsCutOffSaysWhere()
    {
        const QByteArray database = "{\n\"Entry1\": {\"Species\": {\"CAS\": \"1\"}},\n"
                                    "\"Entry2\": {\"Species\": {\"CAS\": \"2";
        const QList<Finding> findings = checkFiles({{u"db.json"_s, {}, database}}, optionsOf());
        QCOMPARE(idsOf(findings), (QStringList{u"cas-form"_s, u"json-syntax"_s}));
        QCOMPARE(findings[1].message, u"The file ends inside a text"_s);
        QCOMPARE(findings[1].line, 3);
        QCOMPARE(findings[1].column, 32);
    }

    // The previous test would show this: it fails for a check that does nothing.
    void theTableFailsForEveryCheckThatIsOff()
    {
        for (const CheckInfo &info : allChecks()) {
            CheckSet enabled = CheckSet().set();
            enabled.reset(std::size_t(info.check));
            QVERIFY2(!faultsOf(info.check, optionsOf(enabled)).isEmpty(), info.id.data());
        }
    }

    void everyFolderOfTheDataIsThatOfACheck()
    {
        const QStringList folders =
            QDir(dataFolder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        QCOMPARE(folders.size(), qsizetype(checkCount));
        for (const QString &folder : folders)
            QVERIFY2(checkOfId(folder).has_value(), qPrintable(folder));
    }

    void everyCheckIsExplained()
    {
        for (const CheckInfo &info : allChecks()) {
            QVERIFY2(QRegularExpression(u"^[a-z]+(-[a-z0-9]+)+$|^unreadable$"_s)
                         .match(info.id)
                         .hasMatch(),
                     info.id.data());
            for (const QLatin1String text : {info.summary, info.why, info.mend, info.example})
                QVERIFY2(text.size() > 5, info.id.data());
            QVERIFY(!QString(info.summary).endsWith(u'.'));
            QVERIFY(QString(info.why).endsWith(u'.'));
        }
    }

    void examplesGiveNothing()
    {
        const std::vector<CheckInput> inputs = filesIn(QStringLiteral(ZORAVEL_EXAMPLES));
        QVERIFY(inputs.size() >= 8);
        const QList<Finding> findings = checkFiles(inputs, optionsOf());
        QCOMPARE(QString::fromUtf8(textReport({findings, 8, {}}, false)), QString());
    }

    void theOutputIsTheSameForEveryNumberOfJobs()
    {
        std::vector<CheckInput> inputs = filesIn(dataFolder);
        QVERIFY(inputs.size() > 150);
        CheckOptions options = optionsOf();
        const QByteArray once = jsonReport({checkFiles(inputs, options), 0, {}});
        for (const int jobs : {2, 3, 8, 64}) {
            options.jobs = jobs;
            QCOMPARE(jsonReport({checkFiles(inputs, options), 0, {}}), once);
        }
    }

    void findingsAreInTheOrderOfPathsAndPlaces()
    {
        const std::vector<CheckInput> inputs = filesIn(dataFolder);
        const QList<Finding> findings = checkFiles(inputs, optionsOf());
        const auto key = [](const Finding &finding) {
            return std::make_tuple(finding.path, finding.line, finding.column);
        };
        QVERIFY(
            std::is_sorted(findings.begin(), findings.end(),
                           [&](const Finding &a, const Finding &b) { return key(a) < key(b); }));
    }

    void workThatIsCancelledFindsNothing()
    {
        CheckOptions options = optionsOf();
        options.progress = [](qsizetype) { return false; };
        QVERIFY(checkFiles(filesIn(dataFolder), options).isEmpty());
    }

    void aFindingSaysExactlyWhereAndWhat()
    {
        const QString folder = dataFolder + u"/cas-check-digit/bad"_s;
        const QList<Finding> findings = checkFiles(filesIn(folder), optionsOf());
        QCOMPARE(findings.size(), 1);
        QCOMPARE(findings[0].line, 6);
        QCOMPARE(findings[0].column, 16);
        QCOMPARE(findings[0].pointer, u"/Species/CAS"_s);
        QCOMPARE(textReport({findings, 1, {}}, false),
                 QByteArray("water.json:6:16: error: CAS number 106-97-3 has check digit 3, "
                            "expected 8 [cas-check-digit]\n"
                            "1 error, 0 warnings and 0 notes in 1 file\n"));
    }

    void aSyntaxErrorShowsTheLineAndACaret()
    {
        const QByteArray text = "{\n    \"Name\": \"\xce\xb1\" \"x\"\n}\n";
        const QList<Finding> findings = checkFiles({{u"a.json"_s, {}, text}}, optionsOf());
        QCOMPARE(findings.size(), 1);
        QCOMPARE(findings[0].line, 2);
        QCOMPARE(findings[0].column, 17);
        QCOMPARE(findings[0].source, u"    \"Name\": \"α\" \"x\"\n                ^"_s);
    }

    void overridesNeedAGlobAnIdAndAReason_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("line"); // of the error; 0 if there is none
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("comment") << QByteArray("# x\n\n") << 0;
        QTest::newRow("whole") << QByteArray("a*.json cas-form it is so\r\n") << 0;
        QTest::newRow("quoted") << QByteArray("\"a b.json\" cas-form it is so") << 0;
        QTest::newRow("no reason") << QByteArray("\na.json cas-form") << 2;
        QTest::newRow("no id") << QByteArray("a.json") << 1;
        QTest::newRow("unknown id") << QByteArray("a.json cas it is so") << 1;
    }

    void overridesNeedAGlobAnIdAndAReason()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, line);
        const auto parsed = parseOverrides(text);
        const auto *error = std::get_if<OverrideError>(&parsed);
        QCOMPARE(error ? error->line : 0, line);
    }

    void globsMatchPathsAsWholesOrBehindASlash_data()
    {
        QTest::addColumn<QString>("glob");
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("matches");
        QTest::newRow("name") << u"a.json"_s << u"x/a.json"_s << true;
        QTest::newRow("other name") << u"a.json"_s << u"x/ba.json"_s << false;
        QTest::newRow("star") << u"a*.json"_s << u"abc.json"_s << true;
        QTest::newRow("star stops at a slash") << u"a*.json"_s << u"a/b.json"_s << false;
        QTest::newRow("folder") << u"x/*.json"_s << u"y/x/b.json"_s << true;
        QTest::newRow("folders") << u"x/**/b.json"_s << u"x/1/2/b.json"_s << true;
        QTest::newRow("no folders") << u"x/**/b.json"_s << u"x/b.json"_s << true;
        QTest::newRow("one character") << u"?.json"_s << u"b.json"_s << true;
        QTest::newRow("brackets are themselves") << u"[a].json"_s << u"a.json"_s << false;
        QTest::newRow("dot is itself") << u"a.json"_s << u"axjson"_s << false;
    }

    void globsMatchPathsAsWholesOrBehindASlash()
    {
        QFETCH(QString, glob);
        QFETCH(QString, path);
        QFETCH(bool, matches);
        const auto parsed = parseOverrides(glob.toUtf8() + " cas-form reason");
        const auto &overrides = std::get<QList<Override>>(parsed);
        QCOMPARE(overrides.size(), 1);
        QCOMPARE(overrides[0].files.match(path).hasMatch(), matches);
    }

    void githubShowsErrorsFirstAndCountsWhatIsBeyondItsLimits()
    {
        QList<Finding> findings;
        for (int i = 0; i < 12; ++i)
            findings.append({.check = Check::DoiForm,
                             .severity = Severity::Warning,
                             .path = u"./a,b%.json"_s,
                             .pointer = {},
                             .line = i + 1,
                             .column = 1,
                             .message = u"two\nlines"_s,
                             .hint = {},
                             .source = {}});
        findings.append(findings[0]);
        findings.last().severity = Severity::Error;
        const QByteArray text = githubReport({findings, 1, {}});
        QVERIFY(text.startsWith(
            "::error file=a%2Cb%25.json,line=1,col=1,title=doi-form::two%0Alines\n::warning "));
        QCOMPARE(text.count("::warning "), 10);
        QVERIFY(text.contains("Beyond what GitHub shows beside the files, 2 findings:\n"
                              "./a,b%.json:11:1: warning: two\\x0alines [doi-form]\n"));
        QVERIFY(text.endsWith("1 error, 12 warnings and 0 notes in 1 file\n"));
    }

    void noFindingNoText()
    {
        QCOMPARE(textReport({{}, 8, {}}, true), QByteArray());
        QCOMPARE(githubReport({{}, 8, {}}), QByteArray());
    }

    void colourIsForPeopleOnly()
    {
        const Finding finding{.check = Check::CasForm,
                              .severity = Severity::Error,
                              .path = u"a\x1b.json"_s,
                              .pointer = {},
                              .line = 1,
                              .column = 2,
                              .message = u"m"_s,
                              .hint = {},
                              .source = {}};
        QVERIFY(textReport({{finding}, 1, {}}, true).contains("\x1b[31merror:\x1b[0m m"));
        QVERIFY(!textReport({{finding}, 1, {}}, false).contains('\x1b'));
        // Some terminals take this single character for the start of a command.
        Finding csi = finding;
        csi.message = QChar(0x9b);
        QVERIFY(textReport({{csi}, 1, {}}, false).contains("\\x9b"));
    }

    void jsonHasAllOfAFinding()
    {
        const QList<Finding> findings = checkFiles(
            {{u"water.json"_s, dataFolder + u"/unknown-key/bad/water.json"_s, {}}}, optionsOf());
        const QJsonObject root =
            QJsonDocument::fromJson(jsonReport({findings, 3, "1.2.3"})).object();
        QCOMPARE(root[u"tool"_s][u"version"_s].toString(), u"1.2.3"_s);
        QCOMPARE(root[u"totals"_s][u"files"_s].toInt(), 3);
        const QJsonObject first = root[u"findings"_s].toArray().last().toObject();
        QCOMPARE(first[u"id"_s].toString(), u"unknown-key"_s);
        QCOMPARE(first[u"severity"_s].toString(), u"warning"_s);
        QCOMPARE(first[u"path"_s].toString(), u"water.json"_s);
        QCOMPARE(first[u"pointer"_s].toString(), u"/Species/Formular"_s);
        QVERIFY(first[u"line"_s].toInt() > 1);
        QCOMPARE(first[u"column"_s].toInt(), 9);
        QVERIFY(first[u"message"_s].toString().contains(u"Formular"_s));
        QCOMPARE(first[u"hint"_s].toString(), u"Did you mean \"Formula\"?"_s);
    }
};

QTEST_GUILESS_MAIN(TestChecks)
#include "tst_checks.moc"
