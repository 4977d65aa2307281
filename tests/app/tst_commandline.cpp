// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commandline.h"

#include <QTest>

#include <vector>

using namespace Qt::StringLiterals;

using Request = CommandLine::Request;

Q_DECLARE_METATYPE(CommandLine::Request)

namespace
{

CommandLine read(const QByteArrayList &words)
{
    std::vector<const char *> argv{"zoravel-entry-edit"};
    for (const QByteArray &word : words)
        argv.push_back(word.constData());
    const int argc = int(argv.size());
    argv.push_back(nullptr);
    return readCommandLine(argc, argv.data());
}

} // namespace

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void readsArguments_data();
    void readsArguments();
    void keepsQtFromWhatFollowsTwoDashes();
    void readsFileNamesInTheCodeOfTheSystem();
    void saysWhatIsWrong();
};

void TestCommandLine::readsArguments_data()
{
    QTest::addColumn<QByteArrayList>("words");
    QTest::addColumn<Request>("request");
    QTest::addColumn<QString>("file");

    const auto row = [](const char *name, const QByteArrayList &words, Request request,
                        const QString &file = {}) {
        QTest::newRow(name) << words << request << file;
    };
    row("nothing", {}, Request::Window);
    row("file", {"a.json"}, Request::Window, u"a.json"_s);
    row("file of two dots", {"../a b.json"}, Request::Window, u"../a b.json"_s);
    row("empty name", {""}, Request::Window, u""_s);
    row("single dash is a name", {"-"}, Request::Window, u"-"_s);
    row("two dashes alone", {"--"}, Request::Window);
    row("dash after two dashes", {"--", "-a.json"}, Request::Window, u"-a.json"_s);
    row("option after two dashes", {"--", "--help"}, Request::Window, u"--help"_s);
    row("two dashes twice", {"--", "--"}, Request::Window, u"--"_s);
    row("file before two dashes", {"a.json", "--"}, Request::Window, u"a.json"_s);
    row("dash without two dashes", {"-a.json"}, Request::Refusal);
    row("two files", {"a.json", "b.json"}, Request::Refusal);
    row("file on each side", {"a.json", "--", "b.json"}, Request::Refusal);

    row("help", {"--help"}, Request::Help);
    row("help after a file", {"a.json", "-h"}, Request::Help);
    row("version", {"--version"}, Request::Version);
    row("short version", {"-v"}, Request::Version);
    row("the first of two", {"--version", "--help"}, Request::Version);
    row("unknown", {"--nonsense"}, Request::Refusal);
    row("unknown before help", {"--nonsense", "--help"}, Request::Refusal);
    row("nearly help", {"--helpme"}, Request::Refusal);
    row("help with a value", {"--help=yes"}, Request::Refusal);
    row("three dashes", {"---"}, Request::Refusal);

    row("style", {"-style", "fusion", "a.json"}, Request::Window, u"a.json"_s);
    row("style, two dashes", {"--style", "fusion", "a.json"}, Request::Window, u"a.json"_s);
    row("style after the file", {"a.json", "-style", "fusion"}, Request::Window, u"a.json"_s);
    row("style with equals sign", {"-style=fusion", "a.json"}, Request::Window, u"a.json"_s);
    row("platform with equals sign", {"-platform=offscreen"}, Request::Refusal);
    row("flag", {"-reverse", "a.json"}, Request::Window, u"a.json"_s);
    row("flag with a value", {"-reverse=yes"}, Request::Refusal);
    row("session", {"-session", "0123_45"}, Request::Window);
    row("value like an option", {"-title", "--help"}, Request::Window);
    row("style without value", {"a.json", "-style"}, Request::Refusal);
    row("nearly style", {"-styl", "fusion"}, Request::Refusal);
}

void TestCommandLine::readsArguments()
{
    QFETCH(const QByteArrayList, words);
    QFETCH(const Request, request);
    QFETCH(const QString, file);

    const CommandLine line = read(words);
    QCOMPARE(line.request, request);
    QCOMPARE(line.file, file);
    QCOMPARE(line.file.isNull(), file.isNull());
    QCOMPARE(line.problem.isEmpty(), request != Request::Refusal);
}

void TestCommandLine::keepsQtFromWhatFollowsTwoDashes()
{
    QCOMPARE(read({"a.json", "-style", "fusion"}).qtArguments, 4);
    const CommandLine line = read({"-reverse", "--", "-style"});
    QCOMPARE(line.file, u"-style"_s);
    QCOMPARE(line.qtArguments, 2);
}

void TestCommandLine::readsFileNamesInTheCodeOfTheSystem()
{
    const QString name = u"/tmp/Ångström Σ.json"_s;
    QCOMPARE(read({name.toLocal8Bit()}).file, name);
}

void TestCommandLine::saysWhatIsWrong()
{
    QCOMPARE(read({"--nonsense"}).problem, u"unknown option '--nonsense'"_s);
    QCOMPARE(read({"a.json", "b.json"}).problem, u"more than one file: 'b.json'"_s);
    QCOMPARE(read({"--style"}).problem, u"option '--style' needs a value"_s);
}

QTEST_GUILESS_MAIN(TestCommandLine)

#include "tst_commandline.moc"
