// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/program.h"
#include "testconsole.h"

#include <QRegularExpression>
#include <QTest>

// The frame of the commands: help, version, wrong usage, progress.
class TestCliProgram : public QObject
{
    Q_OBJECT

private slots:
    void theHelpNamesEveryCommandAndEachHasItsOwn()
    {
        TestConsole console;
        QCOMPARE(console.run({"--help"}), 0);
        QCOMPARE(console.errors, "");
        const QByteArrayList names = commandsIn(console.output);
        QVERIFY(names.contains("compile") && names.contains("list"));
        for (const QByteArray &name : names) {
            QCOMPARE(console.run({name, "--help"}), 0);
            QVERIFY2(console.output.startsWith(QByteArray("Usage: zoravel " + name + ' ')),
                     name.constData());
            QVERIFY2(console.output.contains("--help"), name.constData());
            for (const QByteArray &line : console.output.split('\n'))
                QVERIFY2(QString::fromUtf8(line).size() <= 88, line.constData());
            const QByteArray help = console.output;
            QCOMPARE(console.run({name, "-h", "--", "-x"}), 0);
            QCOMPARE(console.output, help);
        }
    }

    void everyHelpShowsExamplesWithOptionsThatThereAre()
    {
        TestConsole console;
        QCOMPARE(console.run({"--help"}), 0);
        const QByteArrayList names = commandsIn(console.output);
        for (const QByteArray &name : names) {
            QCOMPARE(console.run({name, "--help"}), 0);
            const qsizetype at = console.output.indexOf("\nExamples:\n");
            QVERIFY2(at > 0, name.constData());
            const QByteArrayList examples = console.output.sliced(at + 11).trimmed().split('\n');
            for (const QByteArray &example : examples) {
                QVERIFY2(example.trimmed().startsWith(QByteArray("zoravel " + name + ' ')),
                         example.constData());
                for (const QByteArray &word : example.split(' ')) {
                    if (word.startsWith('-'))
                        QVERIFY2(console.output.left(at).contains(QByteArray(' ' + word)),
                                 example.constData());
                }
            }
        }
    }

    void helpOfACommandIsWhatItsOptionShows()
    {
        TestConsole console;
        QCOMPARE(console.run({"convert", "--help"}), 0);
        const QByteArray ofConvert = console.output;
        QCOMPARE(console.run({"help", "convert"}), 0);
        QCOMPARE(console.output, ofConvert);
        QCOMPARE(console.run({"--help"}), 0);
        const QByteArray ofAll = console.output;
        QCOMPARE(console.run({"help"}), 0);
        QCOMPARE(console.output, ofAll);
    }

    void theVersionIsTheProjects()
    {
        TestConsole console;
        QCOMPARE(console.run({"--version"}), 0);
        QCOMPARE(console.output, "zoravel " ZORAVEL_VERSION "\n");
    }

    void wrongUsageEndsWithTwoAndAHint_data()
    {
        QTest::addColumn<QByteArrayList>("words");
        QTest::addColumn<QByteArray>("errors");
        const auto row = [](const QByteArrayList &words, const char *errors) {
            QTest::newRow(words.join(' ').constData()) << words << QByteArray(errors);
        };
        row({}, "zoravel: a command is missing\nSee \"zoravel --help\".\n");
        row({"lst"}, "zoravel: unknown command lst; did you mean list?\nSee \"zoravel --help\".\n");
        row({"help", "lst"}, "zoravel help: unknown command lst; did you mean list?\n"
                             "See \"zoravel help --help\".\n");
        row({"help", "list", "diff"}, "zoravel help: one command can be named\n"
                                      "See \"zoravel help --help\".\n");
        row({"check", "--only", "cas-digit", "x"},
            "zoravel check: there is no check cas-digit; did you mean cas-check-digit?\n"
            "See \"zoravel check --help\".\n");
        row({"check", "--skip", "", "x"},
            "zoravel check: --skip needs ids of checks\nSee \"zoravel check --help\".\n");
        row({"--hlep"},
            "zoravel: unknown option --hlep; did you mean --help?\nSee \"zoravel --help\".\n");
        row({"a\nb\x1b[2J"}, "zoravel: unknown command a\\nb\\x1b[2J\nSee \"zoravel --help\".\n");
        row({"list"}, "zoravel list: no file is named\nSee \"zoravel list --help\".\n");
        row({"list", "-f", "jsn", "x"},
            "zoravel list: the form jsn is none of text, tsv, json; did you mean json?\n"
            "See \"zoravel list --help\".\n");
        row({"compile", "x"},
            "zoravel compile: -o DB.json is missing\nSee \"zoravel compile --help\".\n");
        row({"diff", "a"},
            "zoravel diff: two files or folders have to be named\nSee \"zoravel diff --help\".\n");
        row({"format", "--lossy", "x"},
            "zoravel format: --lossy needs --in-place\nSee \"zoravel format --help\".\n");
        row({"format", "--check", "--in-place", "x"},
            "zoravel format: --check and --in-place exclude each other\n"
            "See \"zoravel format --help\".\n");
    }
    void wrongUsageEndsWithTwoAndAHint()
    {
        QFETCH(QByteArrayList, words);
        TestConsole console;
        QCOMPARE(console.run(words), 2);
        QTEST(console.errors, "errors");
        QCOMPARE(console.output, "");
    }

    void progressIsShownOnATerminalAfterASecondAndTakenAway()
    {
        TestConsole console;
        console.terminal = true;
        {
            Progress progress(console, "Reading", 9);
            progress.advance(1);
            QCOMPARE(console.errors, "");
            QTRY_VERIFY((progress.advance(2), !console.errors.isEmpty()));
            QCOMPARE(console.errors, "\rReading 2 of 9\x1b[K");
            progress.advance(3); // too soon to be read
            QCOMPARE(console.errors, "\rReading 2 of 9\x1b[K");
        }
        QVERIFY(console.errors.endsWith("\r\x1b[K"));
    }

    void progressIsNotShownElsewhere()
    {
        TestConsole console;
        Progress progress(console, "Reading", 9);
        QTest::qWait(1100);
        progress.advance(2);
        QCOMPARE(console.errors, "");
    }

private:
    static QByteArrayList commandsIn(const QByteArray &help)
    {
        static const QRegularExpression line(QStringLiteral("^  ([a-z]+) "),
                                             QRegularExpression::MultilineOption);
        QByteArrayList names;
        for (auto it = line.globalMatch(QString::fromUtf8(help)); it.hasNext();)
            names.append(it.next().captured(1).toUtf8());
        return names;
    }
};

QTEST_MAIN(TestCliProgram)
#include "tst_cli_program.moc"
