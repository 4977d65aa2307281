// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/arguments.h"

#include <QTest>

#include <array>

namespace
{

constexpr std::array options{
    Option{"output", 'o', "FILE", ""},
    Option{"meta", 0, "KEY=VALUE", ""},
    Option{"quiet", 'q', nullptr, ""},
    Option{"raw", 'r', nullptr, ""},
};

} // namespace

// Taking the words of a command line apart.
class TestCliArguments : public QObject
{
    Q_OBJECT

private slots:
    void wordsAreTakenApart_data()
    {
        QTest::addColumn<QByteArrayList>("words");
        QTest::addColumn<QByteArrayList>("outputs");
        QTest::addColumn<int>("quiet");
        QTest::addColumn<QByteArrayList>("operands");
        const auto row = [](const char *name, const QByteArrayList &words,
                            const QByteArrayList &outputs, int quiet,
                            const QByteArrayList &operands) {
            QTest::newRow(name) << words << outputs << quiet << operands;
        };
        row("nothing", {}, {}, 0, {});
        row("operands", {"a", "", "b c"}, {}, 0, {"a", "", "b c"});
        row("value in the next word", {"--output", "x", "a"}, {"x"}, 0, {"a"});
        row("value behind an equals sign", {"--output=x=y", "a"}, {"x=y"}, 0, {"a"});
        row("empty value", {"--output=", "a"}, {""}, 0, {"a"});
        row("letter", {"-o", "x"}, {"x"}, 0, {});
        row("letter with its value", {"-ox"}, {"x"}, 0, {});
        row("value like an option", {"-o", "-q"}, {"-q"}, 0, {});
        row("letters together", {"-qro", "x"}, {"x"}, 1, {});
        row("behind operands", {"a", "-q", "b"}, {}, 1, {"a", "b"});
        row("hyphen alone", {"-", "-q"}, {}, 1, {"-"});
        row("ended", {"-q", "--", "-q", "--", "--output"}, {}, 1, {"-q", "--", "--output"});
        row("twice", {"-o", "x", "--output", "y"}, {"x", "y"}, 0, {});
        row("any bytes", {"-o\xff", "\x80"}, {"\xff"}, 0, {"\x80"});
    }
    void wordsAreTakenApart()
    {
        QFETCH(QByteArrayList, words);
        QFETCH(QByteArrayList, outputs);
        const auto parsed = Arguments::parse(words, options);
        const auto *arguments = std::get_if<Arguments>(&parsed);
        QVERIFY(arguments);
        QCOMPARE(arguments->values("output"), outputs);
        QCOMPARE(arguments->has("output"), !outputs.isEmpty());
        QCOMPARE(arguments->value("output", "absent"),
                 outputs.isEmpty() ? QByteArray("absent") : outputs.last());
        QTEST(arguments->has("quiet") ? 1 : 0, "quiet");
        QTEST(arguments->operands(), "operands");
    }

    void wrongWordsAreRefused_data()
    {
        QTest::addColumn<QByteArrayList>("words");
        QTest::addColumn<QByteArray>("what");
        QTest::addColumn<QByteArray>("hint");
        const auto row = [](const QByteArrayList &words, const char *what, const char *hint) {
            QTest::newRow(words.join(' ').constData())
                << words << QByteArray(what) << QByteArray(hint);
        };
        row({"--ouput", "x"}, "unknown option --ouput", "--output");
        row({"--out=x"}, "unknown option --out", "--output");
        row({"--qiuet"}, "unknown option --qiuet", "--quiet");
        row({"--completely-else"}, "unknown option --completely-else", "");
        row({"-x"}, "unknown option -x", "");
        row({"-qx"}, "unknown option -x", "");
        row({"--output"}, "option --output needs a value: FILE", "");
        row({"-o"}, "option -o needs a value: FILE", "");
        row({"--quiet=yes"}, "option --quiet takes no value", "");
    }
    void wrongWordsAreRefused()
    {
        QFETCH(QByteArrayList, words);
        const auto parsed = Arguments::parse(words, options);
        const auto *error = std::get_if<UsageError>(&parsed);
        QVERIFY(error);
        QTEST(error->what, "what");
        QTEST(error->hint, "hint");
    }

    void everyCommandHasAHelp()
    {
        for (const char *word : {"-h", "--help", "-qh"}) {
            const auto parsed = Arguments::parse({word}, options);
            QVERIFY(std::get_if<Arguments>(&parsed));
            QVERIFY(std::get<Arguments>(parsed).has("help"));
        }
    }

    void aHintComesClose()
    {
        const QByteArrayList names{"compile", "check", "convert"};
        QCOMPARE(closestTo("compile", names), "compile");
        QCOMPARE(closestTo("complie", names), "compile");
        QCOMPARE(closestTo("chek", names), "check");
        QCOMPARE(closestTo("conv", names), "convert");
        QCOMPARE(closestTo("xyzzy", names), "");
        QCOMPARE(closestTo("", names), "");
        QCOMPARE(closestTo(QByteArray(100'000, 'x'), names), "");
    }
};

QTEST_MAIN(TestCliArguments)
#include "tst_cli_arguments.moc"
