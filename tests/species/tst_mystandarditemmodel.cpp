// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/mystandarditemmodel.h"
#include "support/warnings.h"

#include <QAbstractItemModelTester>
#include <QDate>
#include <QElapsedTimer>
#include <QImage>
#include <QMetaObject>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// A model of two rows and three columns, checked by Qt's model tester.
struct Fixture {
    MyStandardItemModel model{2, 3};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
    QModelIndex index = model.index(1, 2);
    QSignalSpy spy{&model, &QAbstractItemModel::dataChanged};
};

QImage redDot()
{
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

} // namespace

class TestMyStandardItemModel : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void addsNoSignalsSlotsOrProperties()
    {
        const QMetaObject &meta = MyStandardItemModel::staticMetaObject;
        QCOMPARE(meta.className(), "MyStandardItemModel");
        QCOMPARE(meta.methodCount(), QStandardItemModel::staticMetaObject.methodCount());
        QCOMPARE(meta.propertyCount(), QStandardItemModel::staticMetaObject.propertyCount());
    }

    void aWriteToNoCellIsRefused()
    {
        Fixture f;
        MyStandardItemModel other(1, 1);
        QVERIFY(!f.model.setData({}, u"x"_s));
        QVERIFY(!f.model.setData(f.model.index(2, 0), u"x"_s));
        QVERIFY(!f.model.setData(f.model.index(0, -1), u"x"_s));
        QVERIFY(!f.model.setData(other.index(0, 0), u"x"_s));
        QCOMPARE(f.spy.count(), 0);
        QVERIFY(!other.data(other.index(0, 0)).isValid());
    }

    void anotherValueIsStoredAndAnnouncedOnce_data()
    {
        QTest::addColumn<QVariant>("present");
        QTest::addColumn<QVariant>("written");

        QTest::newRow("text into an unset cell") << QVariant() << QVariant(u"x"_s);
        QTest::newRow("number into an unset cell") << QVariant() << QVariant(0.0);
        QTest::newRow("false into an unset cell") << QVariant() << QVariant(false);
        QTest::newRow("image into an unset cell") << QVariant() << QVariant(redDot());
        QTest::newRow("blank into an unset cell") << QVariant() << QVariant(u" "_s);
        QTest::newRow("text") << QVariant(u"x"_s) << QVariant(u"y"_s);
        QTest::newRow("text in another case") << QVariant(u"x"_s) << QVariant(u"X"_s);
        QTest::newRow("text with a blank") << QVariant(u"x"_s) << QVariant(u"x "_s);
        QTest::newRow("text composed otherwise") << QVariant(u"é"_s) << QVariant(u"e\u0301"_s);
        QTest::newRow("empty text into text") << QVariant(u"x"_s) << QVariant(u""_s);
        QTest::newRow("null text into text") << QVariant(u"x"_s) << QVariant(QString());
        QTest::newRow("empty text into a blank") << QVariant(u" "_s) << QVariant(u""_s);
        QTest::newRow("empty text into a number") << QVariant(0.0) << QVariant(u""_s);
        QTest::newRow("empty text into a date") << QVariant(QDate(2024, 2, 29)) << QVariant(u""_s);
        QTest::newRow("number") << QVariant(12.5) << QVariant(12.25);
        QTest::newRow("integer") << QVariant(1) << QVariant(1.5);
        QTest::newRow("the next number") << QVariant(0.1 + 0.2) << QVariant(0.3);
        QTest::newRow("text into a number that reads the same")
            << QVariant(12.5) << QVariant(u"12.5"_s);
        QTest::newRow("number into a text that reads the same")
            << QVariant(u"12.5"_s) << QVariant(12.5);
        QTest::newRow("text into an integer that reads the same")
            << QVariant(1) << QVariant(u"1"_s);
        QTest::newRow("text into a truth value") << QVariant(true) << QVariant(u"true"_s);
        QTest::newRow("text into a date")
            << QVariant(QDate(2024, 2, 29)) << QVariant(u"2024-02-29"_s);
        QTest::newRow("bytes into text") << QVariant(u"x"_s) << QVariant("x"_ba);
        QTest::newRow("list into text") << QVariant(u"x"_s) << QVariant(QStringList{u"x"_s});
        QTest::newRow("invalid value into text") << QVariant(u"x"_s) << QVariant();
        QTest::newRow("invalid value into a number") << QVariant(0.0) << QVariant();
        QTest::newRow("invalid value into an image") << QVariant(redDot()) << QVariant();
        QTest::newRow("huge") << QVariant(QString(100'000, u'<'))
                              << QVariant(QString(100'001, u'<'));
        QTest::newRow("non-ASCII") << QVariant(u"α-Pinen"_s) << QVariant(u"β-Pinen 🧪"_s);
    }
    void anotherValueIsStoredAndAnnouncedOnce()
    {
        QFETCH(QVariant, present);
        QFETCH(QVariant, written);
        Fixture f;
        QCOMPARE(f.model.setData(f.index, present), present.isValid());
        f.spy.clear();

        QVERIFY(f.model.setData(f.index, written));
        const QVariant stored = f.model.data(f.index, Qt::EditRole);
        QCOMPARE(stored.metaType(), written.metaType());
        QCOMPARE(stored, written);
        QCOMPARE(f.spy.count(), 1);
        QCOMPARE(f.spy.at(0).at(0).toModelIndex(), f.index);
        QCOMPARE(f.spy.at(0).at(1).toModelIndex(), f.index);
    }

    void aWriteThatChangesNothingIsRefused_data()
    {
        QTest::addColumn<QVariant>("present");
        QTest::addColumn<QVariant>("written");

        QTest::newRow("invalid value into an unset cell") << QVariant() << QVariant();
        QTest::newRow("empty text into an unset cell") << QVariant() << QVariant(u""_s);
        QTest::newRow("null text into an unset cell") << QVariant() << QVariant(QString());
        QTest::newRow("text") << QVariant(u"x"_s) << QVariant(u"x"_s);
        QTest::newRow("markup") << QVariant(u"H<sub>2</sub>O"_s) << QVariant(u"H<sub>2</sub>O"_s);
        QTest::newRow("non-ASCII") << QVariant(u"α-Pinen 🧪"_s) << QVariant(u"α-Pinen 🧪"_s);
        QTest::newRow("huge") << QVariant(QString(100'000, u'<'))
                              << QVariant(QString(100'000, u'<'));
        QTest::newRow("number") << QVariant(12.5) << QVariant(12.5);
        QTest::newRow("integer into a number") << QVariant(12.0) << QVariant(12);
        QTest::newRow("number into an integer") << QVariant(12) << QVariant(12.0);
        QTest::newRow("wide integer into an integer") << QVariant(12) << QVariant(12LL);
        QTest::newRow("zero of the other sign") << QVariant(0.0) << QVariant(-0.0);
        QTest::newRow("truth value") << QVariant(true) << QVariant(true);
        QTest::newRow("date") << QVariant(QDate(2024, 2, 29)) << QVariant(QDate(2024, 2, 29));
        QTest::newRow("image") << QVariant(redDot()) << QVariant(redDot());
        QTest::newRow("empty text where an image reads as no text")
            << QVariant(redDot()) << QVariant(u""_s);
        QTest::newRow("empty text into empty bytes") << QVariant(""_ba) << QVariant(u""_s);
    }
    void aWriteThatChangesNothingIsRefused()
    {
        QFETCH(QVariant, present);
        QFETCH(QVariant, written);
        Fixture f;
        QCOMPARE(f.model.setData(f.index, present), present.isValid());
        f.spy.clear();

        QVERIFY(!f.model.setData(f.index, written));
        const QVariant stored = f.model.data(f.index, Qt::EditRole);
        QCOMPARE(stored.metaType(), present.metaType());
        QCOMPARE(stored, present);
        QCOMPARE(f.spy.count(), 0);
    }

    void emptyTextIntoACellThatWasEmptiedIsRefused()
    {
        Fixture f;
        QVERIFY(f.model.setData(f.index, u"x"_s));
        QVERIFY(f.model.setData(f.index, u""_s));
        QCOMPARE(f.model.data(f.index), QVariant(u""_s));
        f.spy.clear();
        QVERIFY(!f.model.setData(f.index, QString()));
        QCOMPARE(f.spy.count(), 0);
    }

    void anInvalidValueUnsetsACellOnce()
    {
        Fixture f;
        QVERIFY(f.model.setData(f.index, u"x"_s));
        QVERIFY(f.model.setData(f.index, QVariant()));
        QVERIFY(!f.model.data(f.index).isValid());
        f.spy.clear();
        QVERIFY(!f.model.setData(f.index, QVariant()));
        QCOMPARE(f.spy.count(), 0);
    }

    void editAndDisplayRoleAreOneSlotAndOthersAreNot()
    {
        Fixture f;
        QVERIFY(f.model.setData(f.index, u"x"_s, Qt::EditRole));
        QVERIFY(!f.model.setData(f.index, u"x"_s, Qt::DisplayRole));
        QVERIFY(f.model.setData(f.index, u"x"_s, Qt::ToolTipRole));
        QVERIFY(f.model.setData(f.index, u"y"_s, Qt::UserRole));
        QCOMPARE(f.model.data(f.index, Qt::DisplayRole), QVariant(u"x"_s));
        QCOMPARE(f.model.data(f.index, Qt::UserRole), QVariant(u"y"_s));
    }

    void otherCellsStayAsTheyAre()
    {
        Fixture f;
        QVERIFY(f.model.setData(f.index, u"x"_s));
        for (int row = 0; row < f.model.rowCount(); ++row) {
            for (int column = 0; column < f.model.columnCount(); ++column) {
                const QModelIndex cell = f.model.index(row, column);
                QCOMPARE(f.model.data(cell).isValid(), cell == f.index);
            }
        }
    }

    void hugeTextsAreComparedAtOnce()
    {
        Fixture f;
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < 100; ++i)
            f.model.setData(f.index, QString(100'000 + i % 2, u'<'));
        QCOMPARE_LT(clock.elapsed(), 2'000);
        QCOMPARE(f.spy.count(), 100);
    }
};

QTEST_GUILESS_MAIN(TestMyStandardItemModel)
#include "tst_mystandarditemmodel.moc"
