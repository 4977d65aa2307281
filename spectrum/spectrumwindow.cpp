// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrumwindow.h"

#include "spectrum/pointmarks.h"
#include "spectrum/spectrumchart.h"
#include "spectrum/spectrummodel.h"
#include "spectrum/undokeys.h"
#include "ui_spectrumwindow.h"
#include "widgets/fieldbinding.h"
#include "widgets/plaindisplay.h"
#include "widgets/tabchain.h"
#include "widgets/undoabletext.h"
#include "widgets/waitcursor.h"
#include "widgets/wheelguard.h"

#include <QCloseEvent>
#include <QDataWidgetMapper>
#include <QDate>
#include <QGuiApplication>
#include <QInputMethod>
#include <QScopedValueRollback>

namespace
{

// The main window among the possible parents, known by its name because nothing here includes it.
QObject *documentOf(QWidget *parent)
{
    return parent && parent->inherits("MainWindow") ? parent : nullptr;
}

} // namespace

SpectrumWindow::SpectrumWindow(QWidget *parent)
    : QWidget(parent),
      ui(std::make_unique<Ui::SpectrumWindow>()),
      mapper(new QDataWidgetMapper(this)),
      document(documentOf(parent))
{
    // Styling a widget styles all of its parts, visible or not. Done while it is empty, each part
    // is styled when it is shown.
    ensurePolished();
    ui->setupUi(this);
    initializeMappings();
    model = new SpectrumModel(this, ui->textEditSpect);
    marks = new PointMarks(ui->textEditSpect);
    binding = new FieldBinding(mapper, model, this);
    new WheelGuard(ui->comboBoxType);
    new UndoKeys(ui->textEditSpect, {ui->buttonNormalize, ui->buttonSparse, ui->buttonCommaToDot});
    // Without a value, leaving the box would write one, which is a change.
    model->setValue(SpectrumColumn::LineSpectrum, false);
    connectSignals();
    buildChart();
    model->setValue(SpectrumColumn::CreatedDate, QDate::currentDate().toString(Qt::ISODate));
    onSpectrumTypeChanged(ui->comboBoxType->currentIndex());
}

SpectrumWindow::SpectrumWindow(const QJsonObject &spectrum, QWidget *parent)
    : SpectrumWindow(parent)
{
    model->loadFromJson(spectrum);
    onSpectrumTypeChanged(model->value(SpectrumColumn::Type).toInt());
    updateChart();
    markBadLines();
}

SpectrumWindow::~SpectrumWindow() = default;

QJsonObject SpectrumWindow::toJson() const
{
    return model->toJson();
}

bool SpectrumWindow::isSimulation() const
{
    return ui->comboBoxType->currentIndex() == simulationType;
}

void SpectrumWindow::commitEdits()
{
    binding->commitEdits();
}

void SpectrumWindow::focusTitle()
{
    ui->lineEditTitle->setFocus();
}

void SpectrumWindow::readPendingPoints()
{
    if (ui->textEditSpect->hasFocus())
        QGuiApplication::inputMethod()->commit();
    model->readPendingPoints();
}

void SpectrumWindow::initializeMappings()
{
    const QByteArray markup = "cleanedHtml";
    const auto map = [&](QWidget *widget, SpectrumColumn column, const QByteArray &property) {
        const SpectrumKind kind = kindOf(column);
        mappings.append({widget, static_cast<int>(column), kind != SpectrumKind::Experiment,
                         kind != SpectrumKind::Simulation, property});
    };
    map(ui->lineEditTitle, SpectrumColumn::Title, markup);
    map(ui->lineEditUploader, SpectrumColumn::Uploader, markup);
    map(ui->lineEditSpectDOI, SpectrumColumn::Doi, markup);
    map(ui->textEditCitations, SpectrumColumn::FurtherRefs, markup);
    map(ui->textEditComments, SpectrumColumn::FurtherComments, markup);
    map(ui->comboBoxType, SpectrumColumn::Type, "currentIndex");
    map(ui->labelCreated, SpectrumColumn::CreatedDate, {}); // filled by the binding
    map(ui->lineEditFacilityDate, SpectrumColumn::FacilityDate, markup);
    map(ui->checkBoxLineSpectrum, SpectrumColumn::LineSpectrum, "checked");
    map(ui->lineEditSourceT, SpectrumColumn::Temperature, markup);
    map(ui->lineEditSource, SpectrumColumn::LevelOfTheory, markup);
    map(ui->lineEditResolution, SpectrumColumn::ConvolutionFwhm, markup);
    map(ui->lineEditFlux, SpectrumColumn::Aie, markup);
    map(ui->lineEditSource, SpectrumColumn::Source, markup);
    map(ui->lineEditResolution, SpectrumColumn::Resolution, markup);
    map(ui->lineEditFlux, SpectrumColumn::Normalization, markup);
}

void SpectrumWindow::connectSignals()
{
    if (document) {
        connect(model, SIGNAL(dataChanged(QModelIndex, QModelIndex, QList<int>)), document,
                SLOT(setModified()));
        connect(ui->textEditSpect, SIGNAL(textChanged()), document, SLOT(setModified()));
    }
    connect(ui->lineEditTitle, &QTextEdit::textChanged, this, &SpectrumWindow::updateWindowTitle);
    connect(ui->comboBoxType, &QComboBox::currentIndexChanged, this,
            &SpectrumWindow::onSpectrumTypeChanged);
    connect(ui->buttonCommaToDot, &QPushButton::clicked, this,
            &SpectrumWindow::onButtonCommaToDotClicked);
    connect(ui->buttonNormalize, &QPushButton::clicked, model, &SpectrumModel::normalizeSpectrum);
    connect(ui->buttonSparse, &QPushButton::clicked, model, &SpectrumModel::makePointsSparser);
    connect(model, &SpectrumModel::spectrumDataChanged, this, &SpectrumWindow::updateChart);
    connect(model, &SpectrumModel::spectrumDataChanged, this, &SpectrumWindow::onPointsRead);
    connect(ui->checkBoxLineSpectrum, &QCheckBox::toggled, this,
            &SpectrumWindow::onLineSpectrumToggled);
    connect(ui->textEditSpect, &QPlainTextEdit::textChanged, this, &SpectrumWindow::showLineCount);
}

void SpectrumWindow::buildChart()
{
    setUpSpectrumChart(ui->chartSpectrum->chart());
    ui->chartSpectrum->setRenderHint(QPainter::Antialiasing);
    ui->chartSpectrum->setRubberBand(QChartView::RectangleRubberBand);
}

void SpectrumWindow::setupMapper(int type)
{
    mapper->clearMapping();
    const bool isListed = type >= 0 && type < ui->comboBoxType->count();
    for (const Mapping &mapping : std::as_const(mappings)) {
        // A type that is not in the list shows as no choice, which must not be written.
        if (mapping.widget == ui->comboBoxType && !isListed)
            continue;
        if (type == simulationType ? mapping.forSimulation : mapping.forExperiment)
            mapper->addMapping(mapping.widget, mapping.column, mapping.property);
    }
}

void SpectrumWindow::onSpectrumTypeChanged(int type)
{
    if (updating)
        return;
    // Binding the fields fills them again, which would lose what was just typed.
    commitEdits();
    const QScopedValueRollback guard(updating, true);
    setTypeLabels(type == simulationType);
    model->setValue(SpectrumColumn::Type, type);
    setupMapper(type);
    ui->comboBoxType->setCurrentIndex(type);
    mapper->toFirst();
}

void SpectrumWindow::setTypeLabels(bool simulation)
{
    struct Text {
        QLabel *label;
        QString experiment;
        QString simulation;
    };
    const Text texts[] = {
        {ui->label_8, QStringLiteral("Source"), QStringLiteral("Level(s) of theory")},
        {ui->label_9, QStringLiteral("Source T / K"), QStringLiteral("Vib. T / K")},
        {ui->label_10, QStringLiteral("Resolution / meV"), QStringLiteral("Conv. FWHM / meV")},
        {ui->label_11, QStringLiteral("Flux normalization"), QStringLiteral("0-0 transition / eV")},
        {ui->labelComments,
         QStringLiteral("Comments: mass resolution, extraction field, details of spectral "
                        "treatment, sample / isomeric purity etc."),
         QStringLiteral("Comments: programs used, approximations, convergence, simulation issues "
                        "etc.")},
        {ui->labelCitations, QStringLiteral("Further citations (expt., source, light source etc.)"),
         QStringLiteral("Further citations (program(s), theory etc.)")},
    };
    for (const Text &text : texts)
        text.label->setText(simulation ? text.simulation : text.experiment);
}

void SpectrumWindow::updateWindowTitle()
{
    constexpr qsizetype longest = 10'000; // characters; frames and tabs lay out all of them
    QString title = beginningOf(ui->lineEditTitle->toPlainText(), longest);
    // Marks for hidden text and pictures do not belong to a title.
    setWindowTitle(title.remove(QChar::ObjectReplacementCharacter));
    ui->chartSpectrum->setSpectrumTitle(windowTitle());
}

void SpectrumWindow::onButtonCommaToDotClicked()
{
    const WaitCursor waitCursor;
    QString text = ui->textEditSpect->toPlainText();
    text.replace(QLatin1Char(','), QLatin1Char('.'));
    replaceTextUndoably(ui->textEditSpect, text);
}

void SpectrumWindow::onLineSpectrumToggled()
{
    if (updating)
        return;
    const WaitCursor waitCursor;
    binding->submit();
    model->setValue(SpectrumColumn::LineSpectrum, ui->checkBoxLineSpectrum->isChecked());
    updateChart();
}

void SpectrumWindow::updateChart()
{
    const QList<QPointF> points = model->getXYVectors();
    drawSpectrum(ui->chartSpectrum->chart(), points,
                 model->value(SpectrumColumn::LineSpectrum).toBool());
    ui->chartSpectrum->setSpectrumPoints(points);
}

// Points that were typed just before a save are not in the file: reading them after it changes the
// document again.
void SpectrumWindow::onPointsRead()
{
    if (model->lastReadFoundChanges())
        markModified();
    markBadLines();
}

// The line count's tool tip tells those who see the marks, the description those who do not.
void SpectrumWindow::markBadLines()
{
    marks->readLines(model->getXYVectors(), model->lineCount());
    QString said;
    if (marks->count() == 1)
        said = tr("Line %1 is not a point of two finite numbers.").arg(marks->firstLine());
    else if (marks->count() > 1)
        said = tr("%1 lines are not points of two finite numbers. The first is line %2.")
                   .arg(marks->count())
                   .arg(marks->firstLine());
    ui->label_14->setToolTip(said);
    ui->textEditSpect->setAccessibleDescription(said);
}

void SpectrumWindow::showLineCount()
{
    ui->label_14->setText(
        tr("Spectrum, I(hv / eV) (%1 lines)").arg(ui->textEditSpect->blockCount()));
}

bool SpectrumWindow::focusNextPrevChild(bool next)
{
    return moveFocusByTab(window(), next) || QWidget::focusNextPrevChild(next);
}

void SpectrumWindow::closeEvent(QCloseEvent *event)
{
    // Deletion is deferred, and a message box may run the event loop first: the next save must
    // leave this spectrum out already.
    model->dropPendingPoints();
    markModified();
    QWidget::closeEvent(event);
}

void SpectrumWindow::markModified()
{
    if (document)
        QMetaObject::invokeMethod(document, "setModified");
}
