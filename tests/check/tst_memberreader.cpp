// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/databasecheck.h"
#include "check/memberreader.h"
#include "support/warnings.h"

#include <QBuffer>
#include <QTest>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#endif

using namespace Qt::StringLiterals;

namespace
{

// A database that is generated while it is read.
class EndlessDatabase final : public QIODevice
{
public:
    explicit EndlessDatabase(int entries) : m_entries(entries)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    [[nodiscard]] qint64 given() const { return m_given; }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        if (m_text.isEmpty())
            m_text = next();
        const qint64 count = std::min<qint64>(size, m_text.size());
        std::copy_n(m_text.constData(), count, data);
        m_text.remove(0, count);
        m_given += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray next()
    {
        static const QByteArray energies = [] {
            constexpr int points = 5000;
            QByteArray text = "9";
            for (int i = 1; i < points; ++i)
                text += ", " + QByteArray::number(9 + i / 1000.0);
            return text;
        }();
        if (m_entry > m_entries)
            return {};
        if (m_entry++ == m_entries)
            return "\"Header\": {}, \"Type\": \"Database v1\"}";
        const QByteArray intensities = QByteArray::number(m_entry) + energies.mid(1);
        return (m_entry == 1 ? "{\"Entry" : "\"Entry") + QByteArray::number(m_entry)
               + "\": {\"Dataset1\": {\"Title\": \"t\", \"E\": [" + energies + "], \"I\": ["
               + intensities + "]}, \"Species\": {\"Name\": \"Species "
               + QByteArray::number(m_entry) + "\"}},\n";
    }

    int m_entries;
    int m_entry = 0;
    QByteArray m_text;
    qint64 m_given = 0;
};

// Sanitizers need many times the program's memory.
#if defined(Q_OS_UNIX) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define MEASURES_MEMORY
#endif

#ifdef MEASURES_MEMORY
// The process's peak memory in MB.
double peakMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024;
}
#endif

} // namespace

class TestMemberReader : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void membersAreReadOneByOne()
    {
        QByteArray text = "\xef\xbb\xbf{ \"a\": {\"x\": [1, \"}\\\"\"]},\n  \"b\\u0063\" : 12 ,"
                          "\"\xc3\xa4\":\"y\"}\n";
        QBuffer device(&text);
        device.open(QIODevice::ReadOnly);
        MemberReader reader(device);
        QVERIFY(reader.next());
        QCOMPARE(reader.key(), u"a"_s);
        QCOMPARE(reader.keyPosition().line, 1);
        QCOMPARE(reader.keyPosition().column, 3);
        QCOMPARE(reader.take(100), QByteArray("{\"a\": {\"x\": [1, \"}\\\"\"]}}"));
        QVERIFY(reader.next());
        QCOMPARE(reader.key(), u"bc"_s);
        QCOMPARE(reader.keyPosition().line, 2);
        QCOMPARE(reader.keyPosition().column, 3);
        QVERIFY(reader.next()); // not taken
        QCOMPARE(reader.key(), u"\u00e4"_s);
        QCOMPARE(reader.keyPosition().column, 19);
        QCOMPARE(reader.takeString(), u"y"_s);
        QVERIFY(!reader.next());
        QVERIFY(!reader.error());
        QVERIFY(!reader.hasFailed());
    }

    void membersLargerThanTheBufferAreWhole()
    {
        const QByteArray value = '[' + QByteArray(200'000, ' ') + QByteArray(100'000, '7') + ']';
        QByteArray text = "{\"a\":" + value + ",\"b\":" + value + '}';
        QBuffer device(&text);
        device.open(QIODevice::ReadOnly);
        MemberReader reader(device);
        QVERIFY(reader.next());
        QVERIFY(reader.take(100'010) == "{\"a\":" + value + '}');
        QVERIFY(reader.next());
        QCOMPARE(reader.key(), u"b"_s);
        QVERIFY(!reader.take(100'000)); // blanks between values do not count
        QVERIFY(!reader.next());
        QVERIFY(!reader.error());
    }

    void whatIsWrongBetweenMembersIsSaid_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("column");
        const auto row = [](const QByteArray &text, const QString &message, int column) {
            QTest::newRow(text.constData()) << text << message << column;
        };
        row("", u"ends"_s, 1);
        row("[]", u"holds no object"_s, 1);
        row("{", u"ends"_s, 2);
        row("{}", u""_s, 0);
        row("{} x", u"More follows"_s, 4);
        row("{\"a\":1", u""_s, 0); // the member says it
        row("{\"a\":{}", u"ends"_s, 8);
        row("{\"a\":{} \"b\":1}", u"A comma"_s, 9);
        row("{\"a\":1,}", u"The name"_s, 8);
        row("{\"a\":1} {}", u"More follows"_s, 9);
        row("{a:1}", u"The name"_s, 2);
    }

    void whatIsWrongBetweenMembersIsSaid()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, message);
        QFETCH(int, column);
        QBuffer device(&text);
        device.open(QIODevice::ReadOnly);
        MemberReader reader(device);
        while (reader.next())
            ;
        QCOMPARE(reader.error().has_value(), column > 0);
        if (!reader.error())
            return;
        QVERIFY2(reader.error()->message.contains(message), qPrintable(reader.error()->message));
        QCOMPARE(reader.error()->position.column, column);
    }

    void aMemberThatIsCutOffEndsWithoutItsBrace()
    {
        QByteArray text = "{\"a\":[1,2";
        QBuffer device(&text);
        device.open(QIODevice::ReadOnly);
        MemberReader reader(device);
        QVERIFY(reader.next());
        QCOMPARE(reader.take(100), text);
        QVERIFY(!reader.next());
    }

    void aFileIsToldByItsFirstKeys_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("kind");
        const auto row = [](const QByteArray &text, FileKind kind) {
            QTest::newRow(text.constData()) << text << int(kind);
        };
        row("{\"Entry1\": {", FileKind::Database);
        row("{\"Header\": 1", FileKind::Database);
        row("{\"x\": 1, \"Entry1\": 1", FileKind::Database);
        row("{\"Entry01\": 1}", FileKind::Other);
        row("{\"Type\": \"Database v1\"", FileKind::Database);
        row("{\"Type\": \"Species v1\"", FileKind::Species);
        row("{\"Type\": \"Spectrum v1\"}", FileKind::Other);
        row("{\"Dataset1\": {", FileKind::Species);
        row("{\"Species\": {}}", FileKind::Species);
        row("{\"E\": [1], \"I\": [2]}", FileKind::Other);
        row("old", FileKind::Other);
        row("", FileKind::Other);
    }

    void aFileIsToldByItsFirstKeys()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, kind);
        QBuffer device(&text);
        device.open(QIODevice::ReadOnly);
        QCOMPARE(int(kindByFirstKeys(device)), kind);
    }

    void ofALargeDatabaseTheFirstKeysAreRead()
    {
        EndlessDatabase device(1000);
        QCOMPARE(kindByFirstKeys(device), FileKind::Database);
        QVERIFY(device.given() <= 100'000);
    }

    void aDatabaseOfAnySizeNeedsTheMemoryOfAnEntry()
    {
#ifndef MEASURES_MEMORY
        QSKIP("memory is not that of the program");
#else
        constexpr double most = 16; // MB
        const auto peakOf = [](int entries) {
            EndlessDatabase device(entries);
            const auto result = checkDatabase(u"db.json"_s, device, {});
            if (!result || device.given() < 50'000 * qint64(entries))
                qFatal("the database is not read");
            return peakMegabytes();
        };
        const double small = peakOf(10);
        const double large = peakOf(1000); // 70 MB
        QVERIFY2(large - small < most, qPrintable(QString::number(large - small)));
#endif
    }
};

QTEST_GUILESS_MAIN(TestMemberReader)
#include "tst_memberreader.moc"
