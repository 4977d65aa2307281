// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrummodel.h"
#include "support/dialogs.h"
#include "support/warnings.h"

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <limits>

using namespace std::chrono_literals;

namespace
{

using Points = QList<QPointF>;

constexpr double inf = std::numeric_limits<double>::infinity();

// A model over a point editor of its own, checked by Qt's model tester.
struct Fixture {
    QWidget window;
    QPlainTextEdit editor{&window};
    SpectrumModel model{&window, &editor};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
    QTimer *timer = model.findChild<QTimer *>();
    QSignalSpy pointsChanged{&model, &SpectrumModel::spectrumDataChanged};
    QSignalSpy cellsChanged{&model, &SpectrumModel::dataChanged};

    explicit Fixture(const QJsonObject &spectrum = {})
    {
        if (!spectrum.isEmpty())
            model.loadFromJson(spectrum);
    }

    // Writes like a user: undoably, and seen by the model.
    void type(const QString &text) { editor.textCursor().insertText(text); }

    void retype(const QString &text)
    {
        editor.selectAll();
        type(text);
    }

    // Waits as long as the model does after the last change.
    void waitForReading()
    {
        const qsizetype before = pointsChanged.size();
        const int interval = timer->interval();
        QVERIFY(timer->isActive());
        timer->setInterval(0ms);
        QTRY_COMPARE(pointsChanged.size(), before + 1);
        timer->setInterval(interval);
        QVERIFY(!timer->isActive());
    }

    void typeAndRead(const QString &text)
    {
        retype(text);
        waitForReading();
        pointsChanged.clear();
    }
};

QString lines(const QStringList &list)
{
    return list.join(QLatin1Char('\n'));
}

QJsonObject json(const char *text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        qWarning("%s: %s", text, qPrintable(error.errorString()));
    return document.object();
}

QJsonObject withPoints(const Points &points)
{
    QJsonArray energies;
    QJsonArray intensities;
    for (const QPointF &point : points) {
        energies.append(point.x());
        intensities.append(point.y());
    }
    return {{QStringLiteral("E"), energies}, {QStringLiteral("I"), intensities}};
}

// A different text for every key.
QJsonObject fullSpectrum(int type)
{
    QJsonObject object = withPoints({{10.5, 1}, {10.75, -2.5}});
    for (const SpectrumTextField &field : spectrumTextFields)
        object.insert(field.key, QStringLiteral("%1 <sub>2</sub>").arg(field.key));
    object.insert(QStringLiteral("SpectType"), type);
    object.insert(QStringLiteral("LineSpectrum"), true);
    return object;
}

QStringList keysOf(SpectrumKind kind)
{
    QStringList keys;
    for (const SpectrumTextField &field : spectrumTextFields) {
        if (field.kind == kind)
            keys.append(field.key);
    }
    return keys;
}

} // namespace

class TestSpectrumModel : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    // The record

    void aNewModelIsOneRowOfSixteenUnsetColumnsAndNoPoints()
    {
        Fixture f;
        QCOMPARE(f.model.rowCount(), 1);
        QCOMPARE(f.model.columnCount(), 16);
        for (int column = 0; column < 16; ++column)
            QVERIFY(!f.model.index(0, column).data(Qt::EditRole).isValid());
        QCOMPARE(f.model.getXYVectors(), Points());
        QCOMPARE(f.editor.toPlainText(), QString());
        QVERIFY(!f.timer->isActive());
    }

    void theColumnsAreInTheOrderOfTheirKeys()
    {
        const QStringList keys{
            QStringLiteral("Title"),
            QStringLiteral("Uploader"),
            QStringLiteral("DOI"),
            QStringLiteral("SpectType"),
            QStringLiteral("FurtherRefs"),
            QStringLiteral("T"),
            QStringLiteral("FurtherComments"),
            QStringLiteral("CreatedDate"),
            QStringLiteral("FacilityDate"),
            QStringLiteral("LineSpectrum"),
            QStringLiteral("Source"),
            QStringLiteral("Resolution"),
            QStringLiteral("Normalization"),
            QStringLiteral("LevelOfTheory"),
            QStringLiteral("ConvolutionFWHM"),
            QStringLiteral("AIE"),
        };
        QCOMPARE(keys.size(), spectrumColumnCount);
        for (const int type : {0, 4}) {
            const QJsonObject object = fullSpectrum(type);
            Fixture f(object);
            for (int column = 0; column < keys.size(); ++column) {
                const QString &key = keys[column];
                const bool other = type == 4 ? column >= 10 && column <= 12 : column >= 13;
                const QVariant expected = other ? QVariant() : object.value(key).toVariant();
                const QVariant actual = f.model.index(0, column).data(Qt::EditRole);
                QVERIFY2(actual == expected, qPrintable(key + actual.toString()));
            }
        }
    }

    void aSpectrumIsWrittenWithTheKeysOfItsKindOnly_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("simulation");
        for (const int type : {0, 1, 2, 3, 5, 6, 7, -1, 1'000'000})
            QTest::addRow("experiment, type %d", type) << type << false;
        QTest::newRow("simulation") << 4 << true;
    }

    void aSpectrumIsWrittenWithTheKeysOfItsKindOnly()
    {
        QFETCH(int, type);
        QFETCH(bool, simulation);
        const Fixture f(fullSpectrum(type));
        const QJsonObject written = f.model.toJson();
        QStringList keys =
            keysOf(SpectrumKind::Any)
            + keysOf(simulation ? SpectrumKind::Simulation : SpectrumKind::Experiment)
            + QStringList{QStringLiteral("SpectType"), QStringLiteral("LineSpectrum"),
                          QStringLiteral("E"), QStringLiteral("I")};
        keys.sort();
        QCOMPARE(keys.size(), 15);
        QCOMPARE(written.keys(), keys);
        QCOMPARE(written.value(QStringLiteral("SpectType")), QJsonValue(type));
        QCOMPARE(written.value(QStringLiteral("LineSpectrum")), QJsonValue(true));
    }

    void whatWasWrittenIsReadAgainTheSame()
    {
        for (const int type : {2, 4, 7}) {
            const QJsonObject written = Fixture(fullSpectrum(type)).model.toJson();
            const Fixture again(written);
            QCOMPARE(again.model.toJson(), written);
        }
    }

    void foreignTagsAreTakenOutOfTheFieldsOfEverySpectrumAlone()
    {
        const QString stored = QStringLiteral("H<sub>2</sub><span>O</span> <B>x</B>");
        const QString cleaned = QStringLiteral("H<sub>2</sub>O x");
        for (const int type : {0, 4}) {
            QJsonObject object = fullSpectrum(type);
            for (const SpectrumTextField &field : spectrumTextFields)
                object.insert(field.key, stored);
            const QJsonObject written = Fixture(object).model.toJson();
            for (const QString &key : keysOf(SpectrumKind::Any))
                QCOMPARE(written.value(key), QJsonValue(cleaned));
            for (const QString &key :
                 keysOf(type == 4 ? SpectrumKind::Simulation : SpectrumKind::Experiment))
                QCOMPARE(written.value(key), QJsonValue(stored));
        }
    }

    void loadingEmitsNothing()
    {
        Fixture f;
        f.model.loadFromJson(fullSpectrum(3));
        QCOMPARE(f.cellsChanged.size(), 0);
        QCOMPARE(f.pointsChanged.size(), 0);
        f.model.setValue(SpectrumColumn::Title, QStringLiteral("signals are free again"));
        QCOMPARE(f.cellsChanged.size(), 1);
    }

    void loadingReplacesTheWholeRecord()
    {
        Fixture f(fullSpectrum(4));
        f.model.loadFromJson(fullSpectrum(1));
        QCOMPARE(f.model.toJson(), Fixture(fullSpectrum(1)).model.toJson());
        f.model.loadFromJson({});
        const QJsonObject written = f.model.toJson();
        for (const auto &value : written) {
            QVERIFY2(value == QJsonValue(QString()) || value == QJsonValue(0)
                         || value == QJsonValue(false) || value == QJsonValue(QJsonArray()),
                     qPrintable(value.toVariant().toString()));
        }
        QCOMPARE(f.editor.toPlainText(), QString());
    }

    void aValueOfTheWrongTypeIsEmptyAndTheOthersStay_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        const QList<std::pair<QByteArray, QJsonValue>> values{
            {"null", QJsonValue::Null},
            {"boolean", true},
            {"number", 300},
            {"string", QStringLiteral("1")},
            {"array", QJsonArray{QStringLiteral("x"), 1}},
            {"object", QJsonObject{{QStringLiteral("E"), 1}}},
        };
        QList<std::pair<QString, QByteArray>> keys{{QStringLiteral("SpectType"), "number"},
                                                   {QStringLiteral("LineSpectrum"), "boolean"},
                                                   {QStringLiteral("E"), "array"},
                                                   {QStringLiteral("I"), "array"}};
        for (const SpectrumTextField &field : spectrumTextFields)
            keys.append({field.key, "string"});
        for (const auto &[key, right] : keys) {
            for (const auto &[name, value] : values) {
                if (name != right)
                    QTest::addRow("%s: %s", qPrintable(key), name.constData()) << key << value;
            }
        }
    }

    void aValueOfTheWrongTypeIsEmptyAndTheOthersStay()
    {
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        const bool isType = key == QStringLiteral("SpectType");
        for (const int type : {0, 4}) {
            const QJsonObject whole = Fixture(fullSpectrum(type)).model.toJson();
            if (!whole.contains(key))
                continue;
            QJsonObject object = fullSpectrum(type);
            object.insert(key, value);
            const QJsonObject written = Fixture(object).model.toJson();
            // A spectrum of no type is an experiment.
            QJsonObject expected = isType ? Fixture(fullSpectrum(0)).model.toJson() : whole;
            if (key.size() == 1 && key != QStringLiteral("T")) {
                expected.insert(QStringLiteral("E"), QJsonArray());
                expected.insert(QStringLiteral("I"), QJsonArray());
            } else if (!isType) {
                expected.insert(key, whole.value(key).isBool() ? QJsonValue(false) : QString());
            }
            QCOMPARE(written, expected);
        }
    }

    void aTypeThatIsNoWholeNumberOrTooLargeIsTypeZero_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("a fraction") << QJsonValue(4.5);
        QTest::newRow("too large") << QJsonValue(1e15);
        QTest::newRow("largest") << QJsonValue(1e308);
    }

    void aTypeThatIsNoWholeNumberOrTooLargeIsTypeZero()
    {
        QFETCH(QJsonValue, value);
        const Fixture f({{QStringLiteral("SpectType"), value}});
        QCOMPARE(f.model.value(SpectrumColumn::Type), QVariant(0));
    }

    // The record: points

    void loadingAndSavingRoundsPointsToSixSignificantDigits()
    {
        const Fixture f(json(R"({"E": [12.34567891, 0.000015], "I": [123456789, -1.0000005]})"));
        QCOMPARE(f.editor.toPlainText(),
                 lines({QStringLiteral("12.3457; 1.23457e+08"), QStringLiteral("1.5e-05; -1")}));
        const QJsonObject written = f.model.toJson();
        QCOMPARE(written.value(QStringLiteral("E")), (QJsonArray{12.3457, 1.5e-05}));
        QCOMPARE(written.value(QStringLiteral("I")), (QJsonArray{123457000, -1}));
    }

    void anExperimentLosesTheFieldsOfASimulationOnLoad()
    {
        Fixture f(json(R"({"SpectType": 3, "AIE": "9.5", "Source": "lamp"})"));
        QVERIFY(!f.model.value(SpectrumColumn::Aie).isValid());
        QVERIFY(!f.model.toJson().contains(QStringLiteral("AIE")));
        QVERIFY(f.model.setValue(SpectrumColumn::Type, simulationType));
        QCOMPARE(f.model.toJson().value(QStringLiteral("AIE")), QJsonValue(QString()));
        QVERIFY(!f.model.toJson().contains(QStringLiteral("Source")));
        // Changing the type by hand forgets nothing.
        QVERIFY(f.model.setValue(SpectrumColumn::Type, 5));
        QCOMPARE(f.model.toJson().value(QStringLiteral("Source")),
                 QJsonValue(QStringLiteral("lamp")));
    }

    void aTemperatureThatIsANumberLoadsAsEmpty()
    {
        const Fixture f(json(R"({"T": 300})"));
        QCOMPARE(f.model.value(SpectrumColumn::Temperature).toString(), QString());
        QCOMPARE(f.model.toJson().value(QStringLiteral("T")), QJsonValue(QString()));
    }

    void pointObjectsMayLackANumberOrBeNoObjects()
    {
        const Fixture f(json(R"({"Spectrum": [{"E": 10.5}, {"I": 2}, 7, "x", null, [], {},
                                              {"E": "1", "I": true}, {"E": 11, "I": 3}]})"));
        const QString zero = QStringLiteral("0; 0");
        QCOMPARE(f.editor.toPlainText(),
                 lines({QStringLiteral("10.5; 0"), QStringLiteral("0; 2"), zero, zero, zero, zero,
                        zero, zero, QStringLiteral("11; 3")}));
    }

    void anArrayElementThatIsNoNumberIsZero()
    {
        const Fixture f(json(R"({"E": [1, "2", null], "I": [true, 5, {}]})"));
        QCOMPARE(f.model.getXYVectors(), (Points{{1, 0}, {0, 5}, {0, 0}}));
    }

    void arraysOfDifferentLengthsLoadNoPointsWithoutAMessage_data()
    {
        QTest::addColumn<QByteArray>("spectrum");
        QTest::newRow("more energies") << QByteArray(R"({"E": [1, 2], "I": [3]})");
        QTest::newRow("more intensities") << QByteArray(R"({"E": [1], "I": [3, 4]})");
        QTest::newRow("no energies") << QByteArray(R"({"E": [], "I": [3]})");
        QTest::newRow("a missing array") << QByteArray(R"({"E": [1, 2]})");
    }

    void arraysOfDifferentLengthsLoadNoPointsWithoutAMessage()
    {
        QFETCH(QByteArray, spectrum);
        const Dialogs none;
        Fixture f(withPoints({{1, 1}}));
        f.model.loadFromJson(json(spectrum.constData()));
        QCOMPARE(f.editor.toPlainText(), QString());
        QCOMPARE(f.model.getXYVectors(), Points());
        QCOMPARE(none.boxes.size(), 0);
    }

    void pointObjectsTakePrecedenceOverArrays()
    {
        const Fixture f(json(R"({"Spectrum": [{"E": 1, "I": 2}], "E": [3, 4], "I": [5, 6]})"));
        QCOMPARE(f.model.getXYVectors(), (Points{{1, 2}}));
        QVERIFY(!f.model.toJson().contains(QStringLiteral("Spectrum")));
        QCOMPARE(f.model.toJson().value(QStringLiteral("E")), QJsonArray{1});
        // Even if there is nothing in them.
        for (const char *nothing : {"[]", "null", "{}", "7", "\"E\""}) {
            const QByteArray text = QByteArray(R"({"E": [3, 4], "I": [5, 6], "Spectrum": )")
                                        .append(nothing)
                                        .append('}');
            QCOMPARE(Fixture(json(text.constData())).editor.toPlainText(), QString());
        }
    }

    void aMissingCreationDateEmptiesTheOneThatWasThere()
    {
        Fixture f;
        QVERIFY(f.model.setValue(SpectrumColumn::CreatedDate, QStringLiteral("2024-02-29")));
        f.model.loadFromJson(json(R"({"Title": "x"})"));
        QCOMPARE(f.model.value(SpectrumColumn::CreatedDate).toString(), QString());
        QCOMPARE(f.model.toJson().value(QStringLiteral("CreatedDate")), QJsonValue(QString()));
    }

    void aTypeOutsideTheListIsKeptAndAnExperiment()
    {
        const Fixture f(json(R"({"SpectType": 7, "Source": "lamp", "AIE": "9"})"));
        QCOMPARE(f.model.value(SpectrumColumn::Type), QVariant(7));
        const QJsonObject written = f.model.toJson();
        QCOMPARE(written.value(QStringLiteral("SpectType")), QJsonValue(7));
        QCOMPARE(written.value(QStringLiteral("Source")), QJsonValue(QStringLiteral("lamp")));
        QVERIFY(!written.contains(QStringLiteral("AIE")));
    }

    void anEmptyPointEditorIsWrittenAsEmptyArrays()
    {
        const Fixture f;
        QCOMPARE(f.model.toJson().value(QStringLiteral("E")), QJsonValue(QJsonArray()));
        QCOMPARE(f.model.toJson().value(QStringLiteral("I")), QJsonValue(QJsonArray()));
    }

    void linesThatAreNoPointsAreNotWrittenButStayInTheEditor()
    {
        const QString text = lines({QStringLiteral("# energy, intensity"), QStringLiteral("10 1"),
                                    QStringLiteral("10,5 2"), QString(), QStringLiteral("11 3")});
        Fixture f;
        f.typeAndRead(text);
        const QJsonObject written = f.model.toJson();
        QCOMPARE(written.value(QStringLiteral("E")), (QJsonArray{10, 11}));
        QCOMPARE(written.value(QStringLiteral("I")), (QJsonArray{1, 3}));
        QCOMPARE(f.editor.toPlainText(), text);
    }

    // The point text

    void everyRunOfSeparatorsIsUnderstood_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("comma and blank") << QStringLiteral("1.0, 2.0");
        QTest::newRow("semicolon") << QStringLiteral("1.0;2.0");
        QTest::newRow("blank and tab") << QStringLiteral("1.0 \t 2.0");
        QTest::newRow("at the ends") << QStringLiteral(";1.0 2.0;");
    }

    void everyRunOfSeparatorsIsUnderstood()
    {
        QFETCH(QString, line);
        Fixture f;
        f.typeAndRead(line);
        QCOMPARE(f.model.getXYVectors(), (Points{{1, 2}}));
    }

    void linesOfAnythingButTwoNumbersAreNoPoints_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("decimal commas") << QStringLiteral("1,5 2,5");
        QTest::newRow("three numbers") << QStringLiteral("1.0 2.0 3.0");
        QTest::newRow("a word") << QStringLiteral("1.0 abc");
    }

    void linesOfAnythingButTwoNumbersAreNoPoints()
    {
        QFETCH(QString, line);
        Fixture f;
        f.typeAndRead(line + QStringLiteral("\n3 4"));
        QCOMPARE(f.model.getXYVectors(), (Points{{3, 4}}));
    }

    void emptyLinesAreLeftOutOfThePointsButStayInTheEditorUntilItIsRewritten()
    {
        const QString text = QStringLiteral("\n1 2\n\n   \n3 4\n");
        Fixture f;
        f.typeAndRead(text);
        QCOMPARE(f.model.getXYVectors(), (Points{{1, 2}, {3, 4}}));
        QCOMPARE(f.editor.toPlainText(), text);
        // Lines of blanks are not empty.
        f.model.setTextEditText();
        QCOMPARE(f.editor.toPlainText(), QStringLiteral("1 2\n   \n3 4"));
    }

    void untilTheEditorIsReadAgainThePointsAreThoseFromBeforeTheTyping()
    {
        const Points before{{10, 1}, {10.005, 2}};
        Fixture f(withPoints(before));
        const QJsonObject written = f.model.toJson();
        f.retype(QStringLiteral("1 100"));
        QVERIFY(f.timer->isActive());
        QCOMPARE(f.pointsChanged.size(), 0);
        QCOMPARE(f.model.getXYVectors(), before);
        QCOMPARE(f.model.toJson(), written);
        f.waitForReading();
        QCOMPARE(f.model.getXYVectors(), (Points{{1, 100}}));

        f.retype(QStringLiteral("2 200\n3 100"));
        f.model.normalizeSpectrum();
        QCOMPARE(f.editor.toPlainText(), QStringLiteral("1.0000 1000.00"));
        f.retype(QStringLiteral("2 200\n3 100"));
        f.model.makePointsSparser();
        QCOMPARE(f.editor.toPlainText(), QString());
    }

    void loadingNormalisingAndResamplingLeaveTheTimerStopped()
    {
        const QJsonObject spectrum = withPoints({{10, 1}, {10.005, 2}});
        Fixture f(spectrum);
        QVERIFY(!f.timer->isActive());
        f.model.normalizeSpectrum();
        QVERIFY(!f.timer->isActive());
        f.model.makePointsSparser();
        QVERIFY(!f.timer->isActive());
        f.model.setTextEditText();
        QVERIFY(!f.timer->isActive());

        // Nor do they leave it running: what was typed is gone.
        f.type(QStringLiteral("x"));
        f.model.loadFromJson(spectrum);
        QVERIFY(!f.timer->isActive());
        f.type(QStringLiteral("x"));
        f.model.normalizeSpectrum();
        QVERIFY(!f.timer->isActive());
        f.type(QStringLiteral("x"));
        f.model.makePointsSparser();
        QVERIFY(!f.timer->isActive());
    }

    void withoutAnEditorTheLinesStayAndReadingOnlySignals()
    {
        SpectrumModel model(nullptr, nullptr);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QSignalSpy spy(&model, &SpectrumModel::spectrumDataChanged);
        const Points points{{10, 1}, {10.002, 4}};
        model.loadFromJson(withPoints(points));
        model.setTextEditText();
        QCOMPARE(model.getXYVectors(), points);
        QCOMPARE(spy.size(), 0);
        model.emitSpectrumDataChanged();
        QCOMPARE(spy.size(), 1);
        QCOMPARE(model.getXYVectors(), points);
        QVERIFY(!model.lastReadFoundChanges());
        model.normalizeSpectrum();
        QCOMPARE(spy.size(), 2);
        QCOMPARE(model.getXYVectors(), (Points{{10, 250}, {10.002, 1000}}));
        model.makePointsSparser();
        QCOMPARE(spy.size(), 3);
        QCOMPARE(model.getXYVectors(), (Points{{10.001, 625}}));
    }

    void everyChangeOfTheTextStartsTwoSecondsAnew()
    {
        Fixture f;
        QVERIFY(f.timer->isSingleShot());
        QCOMPARE(f.timer->intervalAsDuration(), 2000ms);
        f.type(QStringLiteral("1"));
        QVERIFY(f.timer->isActive());
        QTRY_VERIFY(f.timer->remainingTime() < 1900);
        const int left = f.timer->remainingTime();
        f.type(QStringLiteral("2"));
        QVERIFY(f.timer->remainingTime() > left);
        QCOMPARE(f.pointsChanged.size(), 0);
    }

    void aReadingTakesTheLinesAsTheyAreAndSignalsOnce()
    {
        Fixture f;
        f.type(QStringLiteral("1 2"));
        f.type(QStringLiteral("0\n3 4"));
        f.waitForReading();
        QCOMPARE(f.pointsChanged.size(), 1);
        QCOMPARE(f.model.getXYVectors(), (Points{{1, 20}, {3, 4}}));
    }

    void aReadingSignalsAlsoIfNothingChanged()
    {
        Fixture f(withPoints({{1, 2}}));
        f.model.emitSpectrumDataChanged();
        QCOMPARE(f.pointsChanged.size(), 1);
        QVERIFY(!f.model.lastReadFoundChanges());
        QCOMPARE(f.model.getXYVectors(), (Points{{1, 2}}));
    }

    void aReadingKnowsWhetherItFoundOtherLines()
    {
        Fixture f(withPoints({{1, 2}}));
        QVERIFY(!f.model.lastReadFoundChanges());
        f.typeAndRead(QStringLiteral("1; 3"));
        QVERIFY(f.model.lastReadFoundChanges());
        f.typeAndRead(QStringLiteral("1; 3"));
        QVERIFY(!f.model.lastReadFoundChanges());
        // Empty lines are no lines, lines that are no points are.
        f.typeAndRead(QStringLiteral("\n1; 3\n\n"));
        QVERIFY(!f.model.lastReadFoundChanges());
        f.typeAndRead(QStringLiteral("1; 3\nno point"));
        QVERIFY(f.model.lastReadFoundChanges());
    }

    void pendingPointsAreReadAtOnceAndNotAgain()
    {
        Fixture f;
        f.model.readPendingPoints();
        QCOMPARE(f.pointsChanged.size(), 0);
        f.type(QStringLiteral("1 2"));
        f.model.readPendingPoints();
        QCOMPARE(f.pointsChanged.size(), 1);
        QCOMPARE(f.model.getXYVectors(), (Points{{1, 2}}));
        QVERIFY(!f.timer->isActive());
        f.model.readPendingPoints();
        QCOMPARE(f.pointsChanged.size(), 1);
    }

    void droppedPointsAreNeverRead()
    {
        Fixture f(withPoints({{1, 2}}));
        f.retype(QStringLiteral("3 4"));
        f.model.dropPendingPoints();
        QVERIFY(!f.timer->isActive());
        f.model.readPendingPoints();
        QCOMPARE(f.pointsChanged.size(), 0);
        QCOMPARE(f.model.getXYVectors(), (Points{{1, 2}}));
    }

    void theTimerDiesWithTheModel()
    {
        QPlainTextEdit editor;
        auto model = std::make_unique<SpectrumModel>(nullptr, &editor);
        const QPointer<QTimer> timer = model->findChild<QTimer *>();
        QVERIFY(timer);
        editor.insertPlainText(QStringLiteral("1 2"));
        QVERIFY(timer->isActive());
        model.reset();
        QVERIFY(!timer);
        editor.insertPlainText(QStringLiteral("3 4"));
        QCOMPARE(editor.toPlainText(), QStringLiteral("1 23 4"));
    }

    void numbersThatAreNotFiniteArePointsAndWrittenAsNull()
    {
        Fixture f;
        f.typeAndRead(QStringLiteral("nan 1\n2 inf\n-inf 3"));
        const Points points = f.model.getXYVectors();
        QCOMPARE(points.size(), 3);
        QVERIFY(qIsNaN(points[0].x()));
        QCOMPARE(points[1].y(), inf);
        QCOMPARE(points[2].x(), -inf);
        const QJsonArray energies = f.model.toJson().value(QStringLiteral("E")).toArray();
        QCOMPARE(QJsonDocument(energies).toJson(QJsonDocument::Compact), "[null,2,null]");
    }

    void twoHundredThousandPointsAreLoadedAndWritten()
    {
        Points points;
        for (int i = 0; i < 200'000; ++i)
            points.append(QPointF(i, -i));
        const Fixture f(withPoints(points));
        QCOMPARE(f.editor.blockCount(), 200'000);
        const QJsonArray energies = f.model.toJson().value(QStringLiteral("E")).toArray();
        QCOMPARE(energies.size(), 200'000);
        QCOMPARE(energies.last().toInt(), 199'999);
    }

    // Normalising and resampling

    void resamplingGivesTheGridOfOneMilliElectronvolt()
    {
        Fixture f(withPoints({{10.0, 5}, {10.005, 10}, {10.010, 20}}));
        f.model.makePointsSparser();
        QCOMPARE(f.editor.toPlainText(),
                 lines({QStringLiteral("10.001 6.00"), QStringLiteral("10.002 7.00"),
                        QStringLiteral("10.003 8.00"), QStringLiteral("10.004 9.00"),
                        QStringLiteral("10.005 10.00"), QStringLiteral("10.006 12.00"),
                        QStringLiteral("10.007 14.00"), QStringLiteral("10.008 16.00"),
                        QStringLiteral("10.009 18.00")}));
        QCOMPARE(f.pointsChanged.size(), 1);
        // The points are read from the text, not from the calculation.
        QCOMPARE(f.model.getXYVectors().at(5), QPointF(10.006, 12));
    }

    void onePointOrTwoTooCloseOnesAreResampledToNothing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("one") << QStringLiteral("10 5");
        QTest::newRow("one energy") << QStringLiteral("10 5\n10 6");
        QTest::newRow("close") << QStringLiteral("10 5\n10.0009 6");
    }

    void onePointOrTwoTooCloseOnesAreResampledToNothing()
    {
        QFETCH(QString, text);
        Fixture f;
        f.typeAndRead(text);
        f.model.makePointsSparser();
        QCOMPARE(f.editor.toPlainText(), QString());
        QCOMPARE(f.model.getXYVectors(), Points());
        QCOMPARE(f.pointsChanged.size(), 1);
        f.editor.undo();
        QCOMPARE(f.editor.toPlainText(), text);
    }

    void resamplingALineSpectrumIsRefusedInABox()
    {
        QJsonObject spectrum = withPoints({{10.0, 5}, {10.005, 10}});
        spectrum.insert(QStringLiteral("LineSpectrum"), true);
        Fixture f(spectrum);
        const QString text = f.editor.toPlainText();
        Dialogs dialogs;
        dialogs.press(QMessageBox::Ok);
        f.model.makePointsSparser();
        QCOMPARE(dialogs.boxes.size(), 1);
        const SeenBox box = dialogs.boxes.first();
        QCOMPARE(box.icon, QMessageBox::Warning);
        QCOMPARE(box.title, QStringLiteral("Error"));
        QCOMPARE(box.text, QStringLiteral("Cannot resample line spectra"));
        QCOMPARE(box.buttons, QMessageBox::Ok);
        QCOMPARE(box.parent, &f.window);
        QCOMPARE(f.editor.toPlainText(), text);
        QCOMPARE(f.pointsChanged.size(), 0);
        QVERIFY(!f.editor.document()->isUndoAvailable());
    }

    void aLineSpectrumWithoutPointsIsRefusedToo()
    {
        Fixture f({{QStringLiteral("LineSpectrum"), true}});
        Dialogs dialogs;
        dialogs.escape();
        f.model.makePointsSparser();
        QCOMPARE(dialogs.boxes.size(), 1);
    }

    void withoutAWindowTheBoxHasNoParent()
    {
        QObject owner;
        SpectrumModel model(&owner, nullptr);
        model.setValue(SpectrumColumn::LineSpectrum, true);
        Dialogs dialogs;
        dialogs.press(QMessageBox::Ok);
        model.makePointsSparser();
        QCOMPARE(dialogs.boxes.size(), 1);
        QCOMPARE(dialogs.boxes.first().parent, nullptr);
    }

    void anEnergyRangeThatIsTooLargeIsRefusedInABox_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("not a number first") << QStringLiteral("nan 1\n1 1");
        QTest::newRow("not a number last") << QStringLiteral("1 1\nnan 1");
        QTest::newRow("infinite") << QStringLiteral("1 1\ninf 1");
        QTest::newRow("wide") << QStringLiteral("0 1\n10000.0025 1");
        QTest::newRow("more than a 32-bit count") << QStringLiteral("0 1\n1e300 1");
    }

    void anEnergyRangeThatIsTooLargeIsRefusedInABox()
    {
        QFETCH(QString, text);
        Fixture f;
        f.typeAndRead(text);
        Dialogs dialogs;
        dialogs.press(QMessageBox::Ok);
        f.model.makePointsSparser();
        QCOMPARE(dialogs.boxes.size(), 1);
        const SeenBox box = dialogs.boxes.first();
        QCOMPARE(box.icon, QMessageBox::Warning);
        QCOMPARE(box.title, QStringLiteral("Error"));
        QCOMPARE(box.text, QStringLiteral("Energy range too large to resample"));
        QCOMPARE(box.buttons, QMessageBox::Ok);
        QCOMPARE(box.parent, &f.window);
        QCOMPARE(f.editor.toPlainText(), text);
        QCOMPARE(f.pointsChanged.size(), 0);
    }

    void normalisingScalesToAThousandWithFourAndTwoDecimals()
    {
        Fixture f;
        f.typeAndRead(QStringLiteral("10 2\n10.12345; 4\n10.2,4\n10.3 1"));
        f.model.normalizeSpectrum();
        QCOMPARE(f.editor.toPlainText(),
                 lines({QStringLiteral("10.0000 500.00"), QStringLiteral("10.1235 1000.00"),
                        QStringLiteral("10.2000 1000.00"), QStringLiteral("10.3000 250.00")}));
        QCOMPARE(f.pointsChanged.size(), 1);
        QCOMPARE(f.model.getXYVectors().at(3), QPointF(10.3, 250));
        QVERIFY(!f.model.lastReadFoundChanges());
    }

    void aNegativeMaximumIsScaledToAThousandToo()
    {
        Fixture f(withPoints({{1, -2}, {2, -4}}));
        f.model.normalizeSpectrum();
        QCOMPARE(f.editor.toPlainText(), QStringLiteral("1.0000 1000.00\n2.0000 2000.00"));
    }

    void normalisingASpectrumOfZerosChangesAndEmitsNothing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("zeros") << QStringLiteral("1 0\n2 0");
        QTest::newRow("zero is the largest") << QStringLiteral("1 -1\n2 0\n no point");
        QTest::newRow("no points") << QStringLiteral("no point\n1");
        QTest::newRow("nothing") << QString();
    }

    void normalisingASpectrumOfZerosChangesAndEmitsNothing()
    {
        QFETCH(QString, text);
        Fixture f;
        f.type(text);
        f.model.readPendingPoints();
        f.pointsChanged.clear();
        const QSignalSpy textChanged(&f.editor, &QPlainTextEdit::textChanged);
        f.model.normalizeSpectrum();
        QCOMPARE(f.pointsChanged.size(), 0);
        QCOMPARE(textChanged.size(), 0);
        QCOMPARE(f.editor.toPlainText(), text);
    }

    void resamplingNoPointsChangesAndEmitsNothing()
    {
        const QString text = QStringLiteral("no point");
        Fixture f;
        f.typeAndRead(text);
        f.model.makePointsSparser();
        QCOMPARE(f.editor.toPlainText(), text);
        QCOMPARE(f.pointsChanged.size(), 0);
    }

    void bothRewritesRemoveTheLinesThatAreNoPoints()
    {
        const QString text = QStringLiteral("# eV\n10 1\n10,1 2\n10.002 3\n \n1 2 3");
        Fixture f;
        f.typeAndRead(text);
        f.model.makePointsSparser();
        QCOMPARE(f.editor.toPlainText(), QStringLiteral("10.001 2.00"));
        f.typeAndRead(text);
        f.model.normalizeSpectrum();
        QCOMPARE(f.editor.toPlainText(), QStringLiteral("10.0000 333.33\n10.0020 1000.00"));
    }

    void normalisingTwiceGivesTheSameTextTheSecondTime()
    {
        Fixture f(withPoints({{10, 1}, {10.1, 3}, {10.2, 7}}));
        f.model.normalizeSpectrum();
        const QString once = f.editor.toPlainText();
        f.model.normalizeSpectrum();
        QCOMPARE(f.editor.toPlainText(), once);
        QCOMPARE(f.pointsChanged.size(), 2);
    }

    // Undoing

    void aRewriteIsOneUndoStepAfterWhichTheOldTextIsReadAgain_data()
    {
        QTest::addColumn<bool>("resample");
        QTest::newRow("normalising") << false;
        QTest::newRow("resampling") << true;
    }

    void aRewriteIsOneUndoStepAfterWhichTheOldTextIsReadAgain()
    {
        QFETCH(bool, resample);
        const Points points{{10, 1}, {10.005, 2}, {10.01, 4}};
        Fixture f(withPoints(points));
        const QString loaded = f.editor.toPlainText();
        resample ? f.model.makePointsSparser() : f.model.normalizeSpectrum();
        const QString rewritten = f.editor.toPlainText();
        const Points rewrittenPoints = f.model.getXYVectors();
        QVERIFY(rewritten != loaded);

        QTest::keySequence(&f.editor, QKeySequence(QKeySequence::Undo));
        QCOMPARE(f.editor.toPlainText(), loaded);
        QVERIFY(!f.editor.document()->isUndoAvailable());
        QCOMPARE(f.model.getXYVectors(), rewrittenPoints);
        f.waitForReading();
        QCOMPARE(f.model.getXYVectors(), points);
        QVERIFY(f.model.lastReadFoundChanges());

        QTest::keySequence(&f.editor, QKeySequence(QKeySequence::Redo));
        QCOMPARE(f.editor.toPlainText(), rewritten);
        f.waitForReading();
        QCOMPARE(f.model.getXYVectors(), rewrittenPoints);
    }

    void whatWasTypedBeforeARewriteIsItsOwnUndoStep()
    {
        Fixture f(withPoints({{10, 1}, {11, 4}}));
        f.typeAndRead(QStringLiteral("1 2\n2 4\n# note"));
        f.model.normalizeSpectrum();
        f.editor.undo();
        QCOMPARE(f.editor.toPlainText(), QStringLiteral("1 2\n2 4\n# note"));
        f.editor.undo();
        QCOMPARE(f.editor.toPlainText(), QStringLiteral("10; 1\n11; 4"));
        QVERIFY(!f.editor.document()->isUndoAvailable());
    }

    void undoingARewriteBringsBackWhatWasTypedAndNotRead()
    {
        Fixture f(withPoints({{10, 1}, {11, 4}}));
        f.retype(QStringLiteral("5 5\n6 6"));
        f.model.normalizeSpectrum();
        QCOMPARE(f.editor.toPlainText(), QStringLiteral("10.0000 250.00\n11.0000 1000.00"));
        f.editor.undo();
        QCOMPARE(f.editor.toPlainText(), QStringLiteral("5 5\n6 6"));
    }

    void loadingStartsAFreshUndoHistory()
    {
        Fixture f(withPoints({{10, 1}, {11, 4}}));
        f.typeAndRead(QStringLiteral("1 2"));
        f.model.normalizeSpectrum();
        f.editor.undo();
        QVERIFY(f.editor.document()->isUndoAvailable());
        QVERIFY(f.editor.document()->isRedoAvailable());
        f.model.loadFromJson(withPoints({{5, 5}}));
        QVERIFY(!f.editor.document()->isUndoAvailable());
        QVERIFY(!f.editor.document()->isRedoAvailable());
    }
};

QTEST_MAIN(TestSpectrumModel)
#include "tst_spectrummodel.moc"
