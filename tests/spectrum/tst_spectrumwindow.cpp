// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumwindow.h"

#include "spectrum/spectrummodel.h"
#include "spectrum/spectrumobject.h"
#include "support/dialogs.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QChartView>
#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QFormLayout>
#include <QJsonArray>
#include <QLabel>
#include <QLineSeries>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <chrono>
#include <memory>

using namespace std::chrono_literals;

// The parts of its document that a spectrum window knows: the name and the slot.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    int modifications = 0;

public slots:
    void setModified() { ++modifications; }
};

namespace
{

constexpr int experimentType = 3;

// A spectrum window as the main window shows it, in a tab.
struct Fixture {
    MainWindow parent;
    QMdiArea *area = new QMdiArea(&parent);
    QPointer<SpectrumWindow> window;
    SpectrumModel *model;
    QAbstractItemModelTester tester;

    explicit Fixture(SpectrumWindow *(*create)(QWidget *) =
                         [](QWidget *p) { return new SpectrumWindow(p); })
        : window(create(&parent)),
          model(window->findChild<SpectrumModel *>()),
          tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest)
    {
        install();
    }

    explicit Fixture(const QJsonObject &spectrum)
        : window(new SpectrumWindow(spectrum, &parent)),
          model(window->findChild<SpectrumModel *>()),
          tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest)
    {
        install();
    }

    void install()
    {
        area->setViewMode(QMdiArea::TabbedView);
        parent.setCentralWidget(area);
        parent.resize(1000, 900);
        parent.show();
        area->addSubWindow(window)->setAttribute(Qt::WA_DeleteOnClose);
        window->show();
    }

    // Waits until fields can have the focus.
    [[nodiscard]] bool activate()
    {
        parent.activateWindow();
        return QTest::qWaitForWindowActive(&parent);
    }

    template <typename Widget>
    Widget *get(const char *name) const
    {
        auto *widget = window->findChild<Widget *>(QString::fromLatin1(name));
        if (!widget)
            qFatal("there is no %s", name);
        return widget;
    }

    QWidget *widget(const QString &name) const { return get<QWidget>(name.toLatin1().constData()); }
    CleanTextEdit *field(const char *name) const { return get<CleanTextEdit>(name); }
    QLabel *label(const char *name) const { return get<QLabel>(name); }
    QComboBox *types() const { return get<QComboBox>("comboBoxType"); }
    QCheckBox *line() const { return get<QCheckBox>("checkBoxLineSpectrum"); }
    QPlainTextEdit *points() const { return get<QPlainTextEdit>("textEditSpect"); }
    QTimer *timer() const { return model->findChild<QTimer *>(); }

    QLineSeries *series() const
    {
        return qobject_cast<QLineSeries *>(
            get<QChartView>("chartSpectrum")->chart()->series().value(0));
    }

    QString stored(SpectrumColumn column) const { return model->value(column).toString(); }

    // Lets the time pass that the model waits after the last change of the points.
    void waitForReading() const
    {
        QVERIFY(timer()->isActive());
        const int interval = timer()->interval();
        timer()->setInterval(0ms);
        QTRY_VERIFY(!timer()->isActive());
        timer()->setInterval(interval);
    }
};

QJsonObject spectrum(int type)
{
    QJsonObject object{{QStringLiteral("SpectType"), type},
                       {QStringLiteral("E"), QJsonArray{10, 11, 12}},
                       {QStringLiteral("I"), QJsonArray{1, 3, 2}}};
    for (const SpectrumTextField &field : spectrumTextFields)
        object.insert(field.key, QStringLiteral("the %1").arg(field.key));
    return object;
}

// A form field and the column it shows, for experiments and for simulations.
struct Binding {
    const char *widget;
    SpectrumColumn experiment;
    SpectrumColumn simulation;
};

constexpr Binding textBindings[] = {
    {"lineEditTitle", SpectrumColumn::Title, SpectrumColumn::Title},
    {"lineEditUploader", SpectrumColumn::Uploader, SpectrumColumn::Uploader},
    {"lineEditSpectDOI", SpectrumColumn::Doi, SpectrumColumn::Doi},
    {"textEditCitations", SpectrumColumn::FurtherRefs, SpectrumColumn::FurtherRefs},
    {"lineEditSource", SpectrumColumn::Source, SpectrumColumn::LevelOfTheory},
    {"lineEditSourceT", SpectrumColumn::Temperature, SpectrumColumn::Temperature},
    {"lineEditResolution", SpectrumColumn::Resolution, SpectrumColumn::ConvolutionFwhm},
    {"lineEditFlux", SpectrumColumn::Normalization, SpectrumColumn::Aie},
    {"lineEditFacilityDate", SpectrumColumn::FacilityDate, SpectrumColumn::FacilityDate},
    {"textEditComments", SpectrumColumn::FurtherComments, SpectrumColumn::FurtherComments},
};

const char *const tabOrder[] = {
    "lineEditTitle",     "lineEditUploader",     "lineEditSpectDOI", "comboBoxType",
    "textEditCitations", "lineEditSource",       "lineEditSourceT",  "lineEditResolution",
    "lineEditFlux",      "lineEditFacilityDate", "textEditComments", "checkBoxLineSpectrum",
    "buttonNormalize",   "buttonSparse",         "buttonCommaToDot", "textEditSpect",
};

struct LabelTexts {
    const char *label;
    const char *experiment;
    const char *simulation;
};

constexpr LabelTexts labelTexts[] = {
    {"label_2", "Title", "Title"},
    {"label_3", "Uploader", "Uploader"},
    {"label_4", "Created", "Created"},
    {"label_5", "Spect. DOI", "Spect. DOI"},
    {"label_6", "Type", "Type"},
    {"label_8", "Source", "Level(s) of theory"},
    {"label_9", "Source T / K", "Vib. T / K"},
    {"label_10", "Resolution / meV", "Conv. FWHM / meV"},
    {"label_11", "Flux normalization", "0-0 transition / eV"},
    {"label_13", "Date & facility", "Date & facility"},
    {"label_14", "Spectrum, I(hv / eV)", "Spectrum, I(hv / eV)"},
    {"labelComments",
     "Comments: mass resolution, extraction field, details of spectral treatment, sample / "
     "isomeric "
     "purity etc.",
     "Comments: programs used, approximations, convergence, simulation issues etc."},
    {"labelCitations", "Further citations (expt., source, light source etc.)",
     "Further citations (program(s), theory etc.)"},
};

// What assistive technology calls a widget: its own name, or the text of the label that labels it.
QString accessibleName(QWidget *widget)
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(widget);
    for (const auto &[label, relation] : interface->relations(QAccessible::Label))
        return label->text(QAccessible::Name);
    return interface->text(QAccessible::Name);
}

QString shownIn(const CleanTextEdit *field)
{
    return field->toPlainText();
}

} // namespace

class TestSpectrumWindow : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    // The form

    void theFormHasItsWidgetsByName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("kind");
        const auto rows = [](const QByteArray &kind, const QList<const char *> &names) {
            for (const char *name : names)
                QTest::newRow(name) << QString::fromLatin1(name) << kind;
        };
        rows("SingleLineTextEdit",
             {"lineEditTitle", "lineEditUploader", "lineEditSpectDOI", "lineEditSource",
              "lineEditSourceT", "lineEditResolution", "lineEditFlux", "lineEditFacilityDate"});
        rows("CleanTextEdit", {"textEditCitations", "textEditComments"});
        rows("QComboBox", {"comboBoxType"});
        rows("QLabel", {"labelCreated"});
        rows("QCheckBox", {"checkBoxLineSpectrum"});
        rows("QPushButton", {"buttonNormalize", "buttonSparse", "buttonCommaToDot"});
        rows("QPlainTextEdit", {"textEditSpect"});
        rows("SpectrumChartView", {"chartSpectrum"});
        for (const LabelTexts &texts : labelTexts)
            rows("QLabel", {texts.label});
    }

    void theFormHasItsWidgetsByName()
    {
        QFETCH(QString, name);
        const Fixture f;
        QCOMPARE(f.window->findChildren<QWidget *>(name).size(), 1);
        QTEST(QByteArray(f.widget(name)->metaObject()->className()), "kind");
    }

    void theWindowHasItsNameSizeAndTexts()
    {
        const SpectrumWindow window;
        QCOMPARE(window.objectName(), QStringLiteral("SpectrumWindow"));
        QCOMPARE(window.size(), QSize(923, 735));
        QCOMPARE(window.windowTitle(), QString());
        const auto text = [&](const char *name) {
            return window.findChild<QAbstractButton *>(QString::fromLatin1(name))->text();
        };
        QCOMPARE(text("checkBoxLineSpectrum"), QStringLiteral("Line spectrum"));
        QCOMPARE(text("buttonNormalize"), QStringLiteral("Normalize"));
        QCOMPARE(text("buttonSparse"), QStringLiteral("Sparse"));
        QCOMPARE(text("buttonCommaToDot"), QStringLiteral(", \u2192 ."));
    }

    void theTypesAreListedInTheirOrder()
    {
        const Fixture f;
        QStringList types;
        for (int i = 0; i < f.types()->count(); ++i)
            types.append(f.types()->itemText(i));
        QCOMPARE(types, (QStringList{QStringLiteral("ms-TPES"), QStringLiteral("ms-SPES"),
                                     QStringLiteral("TPES"), QStringLiteral("PES"),
                                     QStringLiteral("FC simulation"), QStringLiteral("PIS")}));
        QCOMPARE(types, QStringList(spectrumTypeNames.begin(), spectrumTypeNames.end()));
        QVERIFY(!f.types()->isEditable());
    }

    void labelsAndFieldsStandInTheRowsOfTheirForms_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("field");
        const auto rows = [](const char *layout,
                             const QList<std::pair<const char *, const char *>> &list) {
            for (int row = 0; row < list.size(); ++row)
                QTest::addRow("%s %d", layout, row)
                    << QString::fromLatin1(layout) << row << QString::fromLatin1(list[row].first)
                    << QString::fromLatin1(list[row].second);
        };
        rows("formLayout", {{"label_2", "lineEditTitle"},
                            {"label_3", "lineEditUploader"},
                            {"label_4", "labelCreated"},
                            {"label_5", "lineEditSpectDOI"},
                            {"label_6", "comboBoxType"}});
        rows("formLayout_2", {{"label_8", "lineEditSource"},
                              {"label_9", "lineEditSourceT"},
                              {"label_10", "lineEditResolution"},
                              {"label_11", "lineEditFlux"},
                              {"label_13", "lineEditFacilityDate"}});
    }

    void labelsAndFieldsStandInTheRowsOfTheirForms()
    {
        QFETCH(QString, layout);
        QFETCH(int, row);
        QFETCH(QString, label);
        QFETCH(QString, field);
        const Fixture f;
        const auto *form = f.window->findChild<QFormLayout *>(layout);
        QVERIFY(form);
        QCOMPARE(form->rowCount(), 5);
        QCOMPARE(form->itemAt(row, QFormLayout::LabelRole)->widget(), f.widget(label));
        QCOMPARE(form->itemAt(row, QFormLayout::FieldRole)->widget(), f.widget(field));
    }

    void theLayoutsNestAsDesigned()
    {
        const Fixture f;
        const auto inside = [&](const char *name) {
            QStringList names;
            const auto *layout = f.window->findChild<QLayout *>(QString::fromLatin1(name));
            for (int i = 0; layout && i < layout->count(); ++i) {
                const QLayoutItem *item = layout->itemAt(i);
                const QObject *object = const_cast<QLayoutItem *>(item)->widget();
                if (!object)
                    object = const_cast<QLayoutItem *>(item)->layout();
                names.append(object->objectName());
            }
            return names.join(QLatin1Char(' '));
        };
        QCOMPARE(inside("verticalLayout"), QStringLiteral("horizontalLayout chartSpectrum"));
        QCOMPARE(inside("horizontalLayout"), QStringLiteral("verticalLayout_2 verticalLayout_3"));
        QCOMPARE(inside("verticalLayout_2"),
                 QStringLiteral("formLayout labelCitations textEditCitations formLayout_2 "
                                "labelComments textEditComments formLayout_3"));
        QCOMPARE(inside("verticalLayout_3"),
                 QStringLiteral("label_14 horizontalLayout_2 textEditSpect"));
        QCOMPARE(
            inside("horizontalLayout_2"),
            QStringLiteral("checkBoxLineSpectrum buttonNormalize buttonSparse buttonCommaToDot"));
        QCOMPARE(inside("formLayout_3"), QString());
        QCOMPARE(f.window->layout()->objectName(), QStringLiteral("verticalLayout"));

        const auto margins = [&](const char *name) {
            return f.window->findChild<QLayout *>(QString::fromLatin1(name))->contentsMargins();
        };
        QCOMPARE(margins("horizontalLayout").top(), 0);
        QCOMPARE(margins("horizontalLayout").right(), 0);
        QCOMPARE(margins("verticalLayout_2").top(), 0);
        QCOMPARE(margins("formLayout_2").top(), 0);
        QCOMPARE(margins("formLayout_3").top(), 0);
        QCOMPARE(margins("verticalLayout_3").right(), 0);
    }

    void fieldsGrowAndKeepTabsAsDesigned()
    {
        const Fixture f;
        QVERIFY(f.points()->tabChangesFocus());
        QVERIFY(f.label("labelComments")->wordWrap());
        QCOMPARE(f.widget(QStringLiteral("chartSpectrum"))->minimumHeight(), 200);
        QCOMPARE(f.field("textEditComments")->minimumSize(), QSize(0, 0));
        QCOMPARE(f.field("textEditCitations")->sizePolicy().verticalPolicy(),
                 QSizePolicy::Expanding);
        for (const char *name : {"lineEditTitle", "lineEditUploader"})
            QCOMPARE(f.field(name)->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    }

    void tabsGoThroughTheFormInItsOrderAndBack()
    {
        Fixture f;
        QVERIFY(f.activate());
        const auto focused = [] {
            const QWidget *widget = QApplication::focusWidget();
            return widget ? widget->objectName() : QString();
        };
        f.field(tabOrder[0])->setFocus();
        for (const char *name : tabOrder) {
            QCOMPARE(focused(), QString::fromLatin1(name));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        f.points()->setFocus();
        for (qsizetype i = std::size(tabOrder) - 1; i > 0; --i) {
            QCOMPARE(focused(), QString::fromLatin1(tabOrder[i]));
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
        }
        QCOMPARE(focused(), QString::fromLatin1(tabOrder[0]));
    }

    void everyInputSaysWhatItIsForInBothKinds_data()
    {
        QTest::addColumn<QString>("widget");
        QTest::addColumn<QString>("experiment");
        QTest::addColumn<QString>("simulation");
        const auto row = [](const char *widget, const QString &experiment,
                            const QString &simulation) {
            QTest::newRow(widget) << QString::fromLatin1(widget) << experiment << simulation;
        };
        const auto labelled = [&](const char *widget, const char *name) {
            for (const LabelTexts &texts : labelTexts) {
                if (qstrcmp(texts.label, name) == 0)
                    row(widget, QString::fromUtf8(texts.experiment),
                        QString::fromUtf8(texts.simulation));
            }
        };
        const auto fixed = [&](const char *widget, const QString &name) {
            row(widget, name, name);
        };
        labelled("lineEditTitle", "label_2");
        labelled("lineEditUploader", "label_3");
        labelled("lineEditSpectDOI", "label_5");
        labelled("comboBoxType", "label_6");
        labelled("textEditCitations", "labelCitations");
        labelled("lineEditSource", "label_8");
        labelled("lineEditSourceT", "label_9");
        labelled("lineEditResolution", "label_10");
        labelled("lineEditFlux", "label_11");
        labelled("lineEditFacilityDate", "label_13");
        labelled("textEditComments", "labelComments");
        labelled("textEditSpect", "label_14");
        fixed("checkBoxLineSpectrum", QStringLiteral("Line spectrum"));
        fixed("buttonNormalize", QStringLiteral("Normalize"));
        fixed("buttonSparse", QStringLiteral("Sparse"));
        fixed("buttonCommaToDot", QStringLiteral("Replace commas by dots"));
        fixed("chartSpectrum", QStringLiteral("Chart of the spectrum"));
    }

    void everyInputSaysWhatItIsForInBothKinds()
    {
        QFETCH(QString, widget);
        const Fixture f;
        QTEST(accessibleName(f.widget(widget)), "experiment");
        f.types()->setCurrentIndex(simulationType);
        QTEST(accessibleName(f.widget(widget)), "simulation");
    }

    void nothingInTheWindowTakesDrops()
    {
        Fixture f;
        QVERIFY(f.activate());
        const QList<QWidget *> widgets = f.window->findChildren<QWidget *>();
        QVERIFY(widgets.size() > 40);
        for (const QWidget *widget : widgets) {
            const QString name =
                widget->parentWidget()->objectName() + QLatin1Char('/') + widget->objectName();
            QVERIFY2(!widget->acceptDrops(), qPrintable(name));
        }
    }

    void theSlotsAreDeclaredInTheirOrder()
    {
        const QMetaObject &meta = SpectrumWindow::staticMetaObject;
        QList<QByteArray> methods;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
            methods.append(meta.method(i).methodSignature());
        }
        QCOMPARE(methods, (QList<QByteArray>{"onSpectrumTypeChanged(int)", "updateWindowTitle()",
                                             "onButtonCommaToDotClicked()"}));
    }

    // Types and binding

    void onlyTheFifthTypeIsASimulation()
    {
        const Fixture f;
        for (int type = 0; type < f.types()->count(); ++type) {
            f.types()->setCurrentIndex(type);
            QCOMPARE(f.window->isSimulation(), type == 4);
            QCOMPARE(f.model->value(SpectrumColumn::Type), QVariant(type));
            for (const LabelTexts &texts : labelTexts) {
                const char *expected = type == 4 ? texts.simulation : texts.experiment;
                QCOMPARE(f.label(texts.label)->text(), QString::fromUtf8(expected));
            }
        }
    }

    void aTypeChangeHidesAndDisablesNothing()
    {
        Fixture f;
        QVERIFY(f.activate());
        const QList<QWidget *> widgets = f.window->findChildren<QWidget *>();
        const auto state = [&] {
            QList<std::pair<bool, bool>> result;
            for (const QWidget *widget : widgets)
                result.append({widget->isVisible(), widget->isEnabled()});
            return result;
        };
        const auto before = state();
        f.types()->setCurrentIndex(4);
        QCOMPARE(state(), before);
        f.types()->setCurrentIndex(5);
        QCOMPARE(state(), before);
    }

    void everyFieldShowsAndWritesItsColumnInBothKinds_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("column");
        for (const Binding &binding : textBindings) {
            QTest::addRow("%s, experiment", binding.widget)
                << QString::fromLatin1(binding.widget) << experimentType << int(binding.experiment);
            QTest::addRow("%s, simulation", binding.widget)
                << QString::fromLatin1(binding.widget) << simulationType << int(binding.simulation);
        }
    }

    void everyFieldShowsAndWritesItsColumnInBothKinds()
    {
        QFETCH(QString, name);
        QFETCH(int, type);
        QFETCH(int, column);
        Fixture f(spectrum(type));
        QVERIFY(f.activate());
        CleanTextEdit *field = f.field(qPrintable(name));
        const QModelIndex index = f.model->index(0, column);
        QCOMPARE(shownIn(field), index.data(Qt::EditRole).toString());
        QVERIFY(shownIn(field).startsWith(QStringLiteral("the ")));

        // From the model into the field.
        QVERIFY(f.model->setData(index, QStringLiteral("H<sub>2</sub>O"), Qt::EditRole));
        QCOMPARE(field->cleanedHtml(), QStringLiteral("H<sub>2</sub>O"));

        // From the field into this column and no other, when it is left.
        const QSignalSpy changes(f.model, &SpectrumModel::dataChanged);
        field->setFocus();
        field->moveCursor(QTextCursor::End);
        QTest::keyClicks(field, QStringLiteral("+"));
        QCOMPARE(changes.size(), 0);
        f.points()->setFocus();
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][0].toModelIndex(), index);
        QVERIFY(index.data(Qt::EditRole).toString().endsWith(QLatin1Char('+')));
    }

    void typeDateAndLineSpectrumShowTheirColumnsInBothKinds()
    {
        for (const int type : {experimentType, simulationType}) {
            QJsonObject object = spectrum(type);
            object.insert(QStringLiteral("LineSpectrum"), true);
            Fixture f(object);
            QCOMPARE(f.types()->currentIndex(), type);
            QCOMPARE(f.label("labelCreated")->text(), QStringLiteral("the CreatedDate"));
            QVERIFY(f.line()->isChecked());
            QVERIFY(f.model->setValue(SpectrumColumn::CreatedDate, QStringLiteral("2024-02-29")));
            QCOMPARE(f.label("labelCreated")->text(), QStringLiteral("2024-02-29"));
            f.line()->click();
            QCOMPARE(f.model->value(SpectrumColumn::LineSpectrum), QVariant(false));
        }
    }

    void anExperimentAsASimulationAndBackLosesNoValueOfEitherKind()
    {
        Fixture f(spectrum(experimentType));
        f.types()->setCurrentIndex(simulationType);
        QCOMPARE(shownIn(f.field("lineEditSourceT")), QStringLiteral("the T"));
        for (const char *name : {"lineEditSource", "lineEditResolution", "lineEditFlux"})
            QCOMPARE(shownIn(f.field(name)), QString());

        f.model->setValue(SpectrumColumn::LevelOfTheory, QStringLiteral("B3LYP"));
        f.model->setValue(SpectrumColumn::ConvolutionFwhm, QStringLiteral("10"));
        f.model->setValue(SpectrumColumn::Aie, QStringLiteral("9.5"));
        f.types()->setCurrentIndex(experimentType);
        QCOMPARE(shownIn(f.field("lineEditSourceT")), QStringLiteral("the T"));
        QCOMPARE(shownIn(f.field("lineEditSource")), QStringLiteral("the Source"));
        QCOMPARE(shownIn(f.field("lineEditResolution")), QStringLiteral("the Resolution"));
        QCOMPARE(shownIn(f.field("lineEditFlux")), QStringLiteral("the Normalization"));

        f.types()->setCurrentIndex(simulationType);
        QCOMPARE(shownIn(f.field("lineEditSourceT")), QStringLiteral("the T"));
        QCOMPARE(shownIn(f.field("lineEditSource")), QStringLiteral("B3LYP"));
        QCOMPARE(shownIn(f.field("lineEditResolution")), QStringLiteral("10"));
        QCOMPARE(shownIn(f.field("lineEditFlux")), QStringLiteral("9.5"));
    }

    void theTypeAfterTheSimulationIsAnExperimentAgain()
    {
        Fixture f(spectrum(simulationType));
        QVERIFY(f.window->isSimulation());
        QCOMPARE(shownIn(f.field("lineEditSource")), QStringLiteral("the LevelOfTheory"));
        f.types()->setCurrentIndex(5);
        QVERIFY(!f.window->isSimulation());
        for (const LabelTexts &texts : labelTexts) {
            if (qstrcmp(texts.label, "label_14") != 0)
                QCOMPARE(f.label(texts.label)->text(), QString::fromUtf8(texts.experiment));
        }
        QCOMPARE(shownIn(f.field("lineEditSource")), QString());
        QVERIFY(f.model->setValue(SpectrumColumn::Source, QStringLiteral("lamp")));
        QCOMPARE(shownIn(f.field("lineEditSource")), QStringLiteral("lamp"));
        const QJsonObject written = f.window->toJson();
        QCOMPARE(written.value(QStringLiteral("SpectType")), QJsonValue(5));
        QVERIFY(written.contains(QStringLiteral("Normalization")));
        QVERIFY(!written.contains(QStringLiteral("LevelOfTheory")));
    }

    void textThatWasTypedAndNotLeftSurvivesATypeChange_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("column");
        QTest::addColumn<bool>("staysVisible");
        for (const Binding &binding : textBindings) {
            QTest::newRow(binding.widget)
                << QString::fromLatin1(binding.widget) << int(binding.experiment)
                << (binding.experiment == binding.simulation);
        }
    }

    void textThatWasTypedAndNotLeftSurvivesATypeChange()
    {
        QFETCH(QString, name);
        QFETCH(int, column);
        QFETCH(bool, staysVisible);
        Fixture f;
        QVERIFY(f.activate());
        CleanTextEdit *field = f.field(qPrintable(name));
        field->setFocus();
        QTest::keyClicks(field, QStringLiteral("typed"));
        QVERIFY(field->hasFocus());
        f.types()->setCurrentIndex(simulationType);
        QCOMPARE(f.model->index(0, column).data(Qt::EditRole).toString(), QStringLiteral("typed"));
        QCOMPARE(shownIn(field), staysVisible ? QStringLiteral("typed") : QString());
        f.types()->setCurrentIndex(experimentType);
        QCOMPARE(shownIn(field), QStringLiteral("typed"));
    }

    void aTypeOutsideTheListSurvivesTheLineSpectrumBox()
    {
        Fixture f(spectrum(7));
        QCOMPARE(f.types()->currentIndex(), -1);
        QVERIFY(!f.window->isSimulation());
        QCOMPARE(f.label("label_8")->text(), QStringLiteral("Source"));
        QCOMPARE(shownIn(f.field("lineEditSource")), QStringLiteral("the Source"));
        f.line()->click();
        QCOMPARE(f.model->value(SpectrumColumn::Type), QVariant(7));
        f.line()->click();
        const QJsonObject written = f.window->toJson();
        QCOMPARE(written.value(QStringLiteral("SpectType")), QJsonValue(7));
        QCOMPARE(written.value(QStringLiteral("Source")), QJsonValue(QStringLiteral("the Source")));
    }

    void aTypeOutsideTheListSurvivesTabbingThroughTheForm()
    {
        Fixture f(spectrum(7));
        QVERIFY(f.activate());
        f.parent.modifications = 0;
        f.field(tabOrder[0])->setFocus();
        for (qsizetype i = 0; i < std::ssize(tabOrder); ++i)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(f.window->toJson().value(QStringLiteral("SpectType")), QJsonValue(7));
        QCOMPARE(f.parent.modifications, 0);
    }

    void aTypeOutsideTheListGivesWayToAChosenOne()
    {
        Fixture f(spectrum(7));
        f.types()->setCurrentIndex(simulationType);
        QCOMPARE(f.model->value(SpectrumColumn::Type), QVariant(simulationType));
        f.line()->click();
        QCOMPARE(f.model->value(SpectrumColumn::Type), QVariant(simulationType));
    }

    void theLineSpectrumBoxNeitherSubmitsNorRedrawsDuringATypeChange()
    {
        Fixture f(spectrum(experimentType));
        const QSignalSpy redrawn(f.series(), &QLineSeries::pointsReplaced);
        {
            // The box differs from the record, and a field too: binding the form again restores
            // both.
            const QSignalBlocker blocker(f.line());
            f.line()->setChecked(true);
        }
        f.field("lineEditUploader")->setPlainText(QStringLiteral("not submitted"));
        const QSignalSpy toggled(f.line(), &QCheckBox::toggled);
        f.types()->setCurrentIndex(simulationType);
        QCOMPARE(toggled.size(), 1);
        QCOMPARE(redrawn.size(), 0);
        QVERIFY(!f.line()->isChecked());
        QCOMPARE(f.model->value(SpectrumColumn::LineSpectrum), QVariant(false));
        QCOMPARE(f.stored(SpectrumColumn::Uploader), QStringLiteral("the Uploader"));
        // Afterwards it does both.
        f.line()->click();
        QCOMPARE(redrawn.size(), 1);
        QCOMPARE(f.model->value(SpectrumColumn::LineSpectrum), QVariant(true));
    }

    void theLineSpectrumBoxSubmitsWhatIsInTheFieldsAndRedraws()
    {
        Fixture f(spectrum(experimentType));
        QCOMPARE(f.series()->count(), 3);
        f.field("lineEditUploader")->setPlainText(QStringLiteral("me"));
        f.line()->click();
        QCOMPARE(f.stored(SpectrumColumn::Uploader), QStringLiteral("me"));
        QCOMPARE(f.model->value(SpectrumColumn::LineSpectrum), QVariant(true));
        QCOMPARE(f.series()->count(), 6);
        f.line()->click();
        QCOMPARE(f.series()->count(), 3);
    }

    // What a field cannot show as it is, such as a raw "<", stays in the record.
    void theLineSpectrumBoxKeepsWhatTheFieldsCannotShow_data()
    {
        QTest::addColumn<bool>("isReshown");
        QTest::newRow("loaded") << false;
        QTest::newRow("shown once more by the type") << true;
    }
    void theLineSpectrumBoxKeepsWhatTheFieldsCannotShow()
    {
        QFETCH(bool, isReshown);
        QJsonObject loaded = spectrum(experimentType);
        loaded.insert(QStringLiteral("Resolution"), QStringLiteral("<7 at 10 eV"));
        loaded.insert(QStringLiteral("Uploader"), QStringLiteral("A  B"));
        loaded.insert(QStringLiteral("FurtherComments"), QStringLiteral("below a<b\nand 7"));
        loaded.insert(QStringLiteral("Source"), QStringLiteral("R&D"));
        Fixture f(loaded);
        if (isReshown) {
            f.types()->setCurrentIndex(simulationType);
            f.types()->setCurrentIndex(experimentType);
        }
        for (const bool checked : {true, false}) {
            loaded.insert(QStringLiteral("LineSpectrum"), checked);
            f.line()->click();
            const QJsonObject written = f.window->toJson();
            for (const char *key :
                 {"Resolution", "Uploader", "FurtherComments", "Source", "LineSpectrum"})
                QCOMPARE(written.value(QLatin1String(key)), loaded.value(QLatin1String(key)));
        }
    }

    // Dates, titles and line counts

    void aNewWindowIsAnEmptyExperimentOfToday()
    {
        const QDate before = QDate::currentDate();
        const Fixture f;
        const QDate shown =
            QDate::fromString(f.label("labelCreated")->text(), QStringLiteral("yyyy-MM-dd"));
        QVERIFY(shown >= before && shown <= QDate::currentDate());
        const QJsonObject written = f.window->toJson();
        QCOMPARE(written.value(QStringLiteral("CreatedDate")),
                 QJsonValue(f.label("labelCreated")->text()));
        QCOMPARE(written.value(QStringLiteral("SpectType")), QJsonValue(0));
        QCOMPARE(written.value(QStringLiteral("E")), QJsonValue(QJsonArray()));
        QVERIFY(!f.window->isSimulation());
        for (const Binding &binding : textBindings)
            QCOMPARE(shownIn(f.field(binding.widget)), QString());
    }

    void aLoadedWindowShowsTheStoredDate()
    {
        const Fixture stored({{QStringLiteral("CreatedDate"), QStringLiteral("1999-12-31")}});
        QCOMPARE(stored.label("labelCreated")->text(), QStringLiteral("1999-12-31"));
        const Fixture without({{QStringLiteral("Title"), QStringLiteral("x")}});
        QCOMPARE(without.label("labelCreated")->text(), QString());
        QCOMPARE(without.window->toJson().value(QStringLiteral("CreatedDate")),
                 QJsonValue(QString()));
    }

    void theWindowTitleIsThePlainTextOfTheTitleField()
    {
        Fixture f({{QStringLiteral("Title"), QStringLiteral("H<sub>2</sub>O &amp; <b>more</b>")}});
        QVERIFY(f.activate());
        CleanTextEdit *title = f.field("lineEditTitle");
        QCOMPARE(f.window->windowTitle(), QStringLiteral("H2O & more"));
        QCOMPARE(f.window->windowTitle(), title->toPlainText());
        title->setFocus();
        title->moveCursor(QTextCursor::End);
        QTest::keyClicks(title, QStringLiteral("!"));
        QCOMPARE(f.window->windowTitle(), QStringLiteral("H2O & more!"));
        title->selectAll();
        QTest::keyClick(title, Qt::Key_Delete);
        QCOMPARE(f.window->windowTitle(), QString());
        QVERIFY(f.model->setValue(SpectrumColumn::Title, QStringLiteral("from the record")));
        QCOMPARE(f.window->windowTitle(), QStringLiteral("from the record"));
        QCOMPARE(Fixture().window->windowTitle(), QString());
    }

    void ofALongTitleTheBeginningIsTheWindowTitle()
    {
        const QString longest = QString(9'999, u'x') + u'y';
        Fixture f({{QStringLiteral("Title"), longest}});
        QCOMPARE(f.window->windowTitle(), longest);
        // A pair of surrogates is not parted.
        const QString longer = longest.chopped(1) + QString::fromUcs4(U"\U0001f9ea");
        QVERIFY(f.model->setValue(SpectrumColumn::Title, longer));
        QCOMPARE(f.window->windowTitle(), longest.chopped(1));
        QCOMPARE(f.window->toJson().value(QStringLiteral("Title")).toString(), longer);
        // Nothing in it stands for what the field does not show.
        const QString stacked = QString(u'a') + QString(100'000, QChar(0x301));
        QVERIFY(f.model->setValue(SpectrumColumn::Title, stacked));
        QVERIFY(f.window->windowTitle().size() > 1'000);
        QVERIFY(stacked.startsWith(f.window->windowTitle()));
        QCOMPARE(f.window->toJson().value(QStringLiteral("Title")).toString(), stacked);
    }

    void ofALongDateTheBeginningIsShown()
    {
        const QString key = QStringLiteral("CreatedDate");
        const QString longest = QString(1'000, u'x');
        const Fixture f({{key, longest}});
        const QLabel *shown = f.label("labelCreated");
        QCOMPARE(shown->text(), longest);
        for (const int length : {1'001, 9'000'000}) {
            const QString date(length, u'x');
            QVERIFY(f.model->setValue(SpectrumColumn::CreatedDate, date));
            QCOMPARE(shown->text(), longest + QChar(0x2026));
            QVERIFY(f.window->toJson().value(key).toString() == date);
        }
    }

    void theLineCountIsShownFromTheFirstChangeOfThePointsOn()
    {
        const Fixture f;
        const auto shown = [&] { return f.label("label_14")->text(); };
        QCOMPARE(shown(), QStringLiteral("Spectrum, I(hv / eV)"));
        f.points()->setPlainText(QStringLiteral("1 2\n3 4\n5 6"));
        QCOMPARE(shown(), QStringLiteral("Spectrum, I(hv / eV) (3 lines)"));
        f.points()->appendPlainText(QString());
        QCOMPARE(shown(), QStringLiteral("Spectrum, I(hv / eV) (4 lines)"));
        f.points()->clear();
        QCOMPARE(shown(), QStringLiteral("Spectrum, I(hv / eV) (1 lines)"));
        QCOMPARE(Fixture(spectrum(0)).label("label_14")->text(),
                 QStringLiteral("Spectrum, I(hv / eV) (3 lines)"));
    }

    // The record

    void theWindowWritesTheModelsObjectUnchanged()
    {
        for (const int type : {experimentType, simulationType, 7}) {
            const Fixture f(spectrum(type));
            QCOMPARE(f.window->toJson(), f.model->toJson());
            QCOMPARE(Fixture(f.window->toJson()).window->toJson(), f.window->toJson());
        }
    }

    void theFocusedFieldIsCommittedOnDemandAndKeepsItsCursor()
    {
        Fixture f;
        QVERIFY(f.activate());
        CleanTextEdit *title = f.field("lineEditTitle");
        title->setFocus();
        QTest::keyClicks(title, QStringLiteral("ab"));
        QTest::keyClick(title, Qt::Key_Left);
        QCOMPARE(f.stored(SpectrumColumn::Title), QString());
        f.window->commitEdits();
        QCOMPARE(f.stored(SpectrumColumn::Title), QStringLiteral("ab"));
        QVERIFY(title->hasFocus());
        QCOMPARE(title->textCursor().position(), 1);
    }

    void pendingPointsAreReadOnDemand()
    {
        Fixture f(spectrum(experimentType));
        f.points()->setPlainText(QStringLiteral("1 2"));
        f.window->readPendingPoints();
        QCOMPARE(f.window->toJson().value(QStringLiteral("E")), (QJsonArray{1}));
        QCOMPARE(f.series()->points(), (QList<QPointF>{{1, 2}}));
        QVERIFY(!f.timer()->isActive());
    }

    void typedPointsReachTheChartWithTheReading()
    {
        Fixture f(spectrum(experimentType));
        const QList<QPointF> before = f.series()->points();
        QTest::keyClicks(f.points(), QStringLiteral("9 9"));
        QTest::keyClick(f.points(), Qt::Key_Return);
        QCOMPARE(f.series()->points(), before);
        f.waitForReading();
        QCOMPARE(f.series()->points(), (QList<QPointF>{{9, 9}, {10, 1}, {11, 3}, {12, 2}}));
    }

    void twoHundredThousandLinesAreLoadedAndEdited()
    {
        QJsonArray energies;
        for (int i = 0; i < 200'000; ++i)
            energies.append(0.001 * i);
        Fixture f({{QStringLiteral("E"), energies}, {QStringLiteral("I"), energies}});
        QVERIFY(f.activate());
        QCOMPARE(f.points()->blockCount(), 200'000);
        QCOMPARE(f.series()->count(), 200'000);
        f.points()->setFocus();
        QTest::keyClick(f.points(), Qt::Key_Return);
        QCOMPARE(f.label("label_14")->text(),
                 QStringLiteral("Spectrum, I(hv / eV) (200001 lines)"));
        QTest::keyClicks(f.points(), QStringLiteral("x"));
        f.waitForReading();
        QCOMPARE(f.series()->count(), 199'999);
    }

    // Buttons

    void theButtonsNormaliseAndResample()
    {
        Fixture f(spectrum(experimentType));
        f.get<QPushButton>("buttonNormalize")->click();
        QCOMPARE(f.points()->toPlainText(),
                 QStringLiteral("10.0000 333.33\n11.0000 1000.00\n12.0000 666.67"));
        QCOMPARE(f.series()->at(1), QPointF(11, 1000));
        f.get<QPushButton>("buttonSparse")->click();
        QCOMPARE(f.points()->blockCount(), f.series()->count());
        QVERIFY(f.points()->toPlainText().startsWith(QStringLiteral("10.001 334.00\n")));
        QVERIFY(f.series()->count() >= 1998);
    }

    void resamplingALineSpectrumIsRefusedOverTheWindow()
    {
        Fixture f(spectrum(experimentType));
        f.line()->click();
        const QString text = f.points()->toPlainText();
        Dialogs dialogs;
        dialogs.press(QMessageBox::Ok);
        f.get<QPushButton>("buttonSparse")->click();
        QCOMPARE(dialogs.boxes.size(), 1);
        QCOMPARE(dialogs.boxes.first().text, QStringLiteral("Cannot resample line spectra"));
        QCOMPARE(dialogs.boxes.first().parent, f.window.data());
        QCOMPARE(f.points()->toPlainText(), text);
    }

    void theCommaButtonTurnsEveryCommaIntoADotAndThePointsAreReadAgain()
    {
        Fixture f;
        f.points()->setPlainText(QStringLiteral("1,5 2,5\n,a,;3"));
        f.waitForReading();
        QCOMPARE(f.series()->count(), 0);
        f.parent.modifications = 0;
        f.get<QPushButton>("buttonCommaToDot")->click();
        QCOMPARE(f.points()->toPlainText(), QStringLiteral("1.5 2.5\n.a.;3"));
        QVERIFY(f.parent.modifications > 0);
        f.waitForReading();
        QCOMPARE(f.series()->points(), (QList<QPointF>{{1.5, 2.5}}));
    }

    void eachButtonIsOneUndoStepAndTheOldTextIsReadAgain_data()
    {
        QTest::addColumn<QString>("button");
        QTest::newRow("normalise") << QStringLiteral("buttonNormalize");
        QTest::newRow("resample") << QStringLiteral("buttonSparse");
        QTest::newRow("commas") << QStringLiteral("buttonCommaToDot");
    }

    void eachButtonIsOneUndoStepAndTheOldTextIsReadAgain()
    {
        QFETCH(QString, button);
        Fixture f(spectrum(experimentType));
        QVERIFY(f.activate());
        const QList<QPointF> points = f.series()->points();
        f.points()->setFocus();
        f.points()->moveCursor(QTextCursor::End);
        QTest::keyClicks(f.points(), QStringLiteral(" # a, b"));
        f.window->readPendingPoints();
        const QString text = f.points()->toPlainText();
        f.get<QPushButton>(qPrintable(button))->click();
        QVERIFY(f.points()->toPlainText() != text);

        f.parent.modifications = 0;
        QTest::keySequence(f.points(), QKeySequence(QKeySequence::Undo));
        QCOMPARE(f.points()->toPlainText(), text);
        QVERIFY(f.parent.modifications > 0);
        f.waitForReading();
        QCOMPARE(f.series()->points(), points.mid(0, 2));
    }

    void undoKeysOnAButtonWorkOnThePoints_data()
    {
        eachButtonIsOneUndoStepAndTheOldTextIsReadAgain_data();
    }

    // A click leaves the keyboard on the button.
    void undoKeysOnAButtonWorkOnThePoints()
    {
        QFETCH(QString, button);
        Fixture f(spectrum(experimentType));
        QVERIFY(f.activate());
        f.points()->moveCursor(QTextCursor::End);
        QTest::keyClicks(f.points(), QStringLiteral(" # a, b"));
        f.window->readPendingPoints();
        const QString before = f.points()->toPlainText();
        QTest::mouseClick(f.widget(button), Qt::LeftButton);
        QVERIFY(f.widget(button)->hasFocus());
        const QString after = f.points()->toPlainText();
        QVERIFY(after != before);

        QTest::keySequence(f.widget(button), QKeySequence(QKeySequence::Undo));
        QCOMPARE(f.points()->toPlainText(), before);
        QTest::keySequence(f.widget(button), QKeySequence(QKeySequence::Redo));
        QCOMPARE(f.points()->toPlainText(), after);
        QVERIFY(f.widget(button)->hasFocus());

        // Elsewhere they do nothing to the points.
        for (const char *other : {"comboBoxType", "checkBoxLineSpectrum", "chartSpectrum"}) {
            f.widget(QString::fromLatin1(other))->setFocus();
            QTest::keySequence(f.widget(QString::fromLatin1(other)),
                               QKeySequence(QKeySequence::Undo));
            QCOMPARE(f.points()->toPlainText(), after);
        }
    }

    // Scrolling past the box must not change the spectrum.
    void theWheelChangesTheTypeOnlyWithTheKeyboardOnIt()
    {
        Fixture f(spectrum(experimentType));
        QVERIFY(f.activate());
        f.points()->setFocus();
        f.parent.modifications = 0;
        const auto turn = [&](int delta) {
            const QPoint at = f.types()->rect().center();
            QWheelEvent event(at, f.types()->mapToGlobal(at), {}, {0, delta}, Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(f.types(), &event);
            return event.isAccepted();
        };
        for (const int delta : {120, -120, -120}) {
            QVERIFY(!turn(delta));
            QCOMPARE(f.types()->currentIndex(), experimentType);
        }
        QVERIFY(f.points()->hasFocus());
        QCOMPARE(f.parent.modifications, 0);

        f.types()->setFocus();
        QVERIFY(turn(-120));
        QCOMPARE(f.types()->currentIndex(), experimentType + 1);
    }

    void loadingStartsAFreshUndoHistory()
    {
        const Fixture f(spectrum(experimentType));
        QVERIFY(!f.points()->document()->isUndoAvailable());
    }

    // The document

    void everyChangeMarksTheDocumentModified_data()
    {
        QTest::addColumn<int>("change");
        QTest::newRow("a field") << 0;
        QTest::newRow("the points") << 1;
        QTest::newRow("the type") << 2;
        QTest::newRow("the box") << 3;
        QTest::newRow("normalise") << 4;
        QTest::newRow("resample") << 5;
    }

    void everyChangeMarksTheDocumentModified()
    {
        QFETCH(int, change);
        Fixture f(spectrum(experimentType));
        f.parent.modifications = 0;
        switch (change) {
        case 0:
            f.model->setValue(SpectrumColumn::Title, QStringLiteral("x"));
            break;
        case 1:
            QTest::keyClicks(f.points(), QStringLiteral("1"));
            break;
        case 2:
            f.types()->setCurrentIndex(1);
            break;
        case 3:
            f.line()->click();
            break;
        case 4:
            f.get<QPushButton>("buttonNormalize")->click();
            break;
        default:
            f.get<QPushButton>("buttonSparse")->click();
        }
        QVERIFY(f.parent.modifications > 0);
    }

    void buildingAWindowMarksTheDocumentModified()
    {
        QVERIFY(Fixture().parent.modifications > 0);
        QVERIFY(Fixture(spectrum(experimentType)).parent.modifications > 0);
    }

    void goingThroughTheFormWithoutAChangeMarksNothing()
    {
        for (const int type : {experimentType, simulationType}) {
            Fixture f(spectrum(type));
            QVERIFY(f.activate());
            f.parent.modifications = 0;
            f.field(tabOrder[0])->setFocus();
            for (qsizetype i = 0; i < std::ssize(tabOrder); ++i)
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(f.parent.modifications, 0);
        }
    }

    void aReadingThatFindsOtherLinesMarksTheDocumentModified()
    {
        Fixture f(spectrum(experimentType));
        QTest::keyClicks(f.points(), QStringLiteral("1"));
        f.parent.modifications = 0; // as a save does
        f.waitForReading();
        QCOMPARE(f.parent.modifications, 1);
    }

    void aReadingThatFindsTheSameLinesMarksNothing()
    {
        Fixture f(spectrum(experimentType));
        QTest::keyClicks(f.points(), QStringLiteral("1"));
        QTest::keyClick(f.points(), Qt::Key_Backspace);
        f.parent.modifications = 0;
        f.waitForReading();
        QCOMPARE(f.parent.modifications, 0);
        QVERIFY(QMetaObject::invokeMethod(f.model, "emitSpectrumDataChanged"));
        QCOMPARE(f.parent.modifications, 0);
    }

    void aClosedWindowReadsNoPointsAndMarksTheDocumentModified_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("its sub-window") << 0;
        QTest::newRow("itself") << 1;
        QTest::newRow("the area's active window") << 2;
        QTest::newRow("all windows of the area") << 3;
        QTest::newRow("the sub-window's menu") << 4;
        QTest::newRow("the tab's button") << 5;
        QTest::newRow("hidden, its sub-window") << 6;
    }

    void aClosedWindowReadsNoPointsAndMarksTheDocumentModified()
    {
        QFETCH(int, way);
        Fixture f(spectrum(experimentType));
        f.area->setTabsClosable(true);
        QVERIFY(f.activate());
        QMdiSubWindow *subWindow = f.area->subWindowList().value(0);
        QTRY_COMPARE(f.area->activeSubWindow(), subWindow);
        QTest::keyClicks(f.points(), QStringLiteral("1"));
        const QPointer<QTimer> timer = f.timer();
        QSignalSpy read(f.model, &SpectrumModel::spectrumDataChanged);
        QVERIFY(timer->isActive());
        f.parent.modifications = 0;
        switch (way) {
        case 0:
            subWindow->close();
            break;
        case 1:
            f.window->close();
            break;
        case 2:
            f.area->closeActiveSubWindow();
            break;
        case 3:
            f.area->closeAllSubWindows();
            break;
        case 4: {
            const QList<QAction *> actions = subWindow->systemMenu()->actions();
            actions.last()->trigger();
            break;
        }
        case 5: {
            auto *tabs = f.area->findChild<QTabBar *>();
            QVERIFY(tabs);
            emit tabs->tabCloseRequested(0);
            break;
        }
        default:
            f.parent.hide();
            subWindow->close();
        }
        QVERIFY(f.parent.modifications > 0);
        QVERIFY(!timer || !timer->isActive());
        QCOMPARE(read.size(), 0);
        if (way != 1) // a widget that is closed alone is only hidden
            QTRY_VERIFY(!f.window);
    }

    void aParentThatIsNoMainWindowIsToldNothing_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("none") << 0;
        QTest::newRow("a widget") << 1;
        QTest::newRow("a main window of another name") << 2;
    }

    void aParentThatIsNoMainWindowIsToldNothing()
    {
        QFETCH(int, kind);
        std::unique_ptr<QWidget> parent;
        if (kind == 1)
            parent = std::make_unique<QWidget>();
        else if (kind == 2)
            parent = std::make_unique<QMainWindow>();
        auto window = std::make_unique<SpectrumWindow>(spectrum(experimentType), parent.get());
        auto *points = window->findChild<QPlainTextEdit *>(QStringLiteral("textEditSpect"));
        points->insertPlainText(QStringLiteral("9 9\n"));
        window->readPendingPoints();
        QCOMPARE(window->toJson().value(QStringLiteral("E")), (QJsonArray{9, 10, 11, 12}));
        window->findChild<QCheckBox *>()->click();
        QVERIFY(window->toJson().value(QStringLiteral("LineSpectrum")).toBool());
        QVERIFY(window->close());
    }
};

QTEST_MAIN(TestSpectrumWindow)
#include "tst_spectrumwindow.moc"
