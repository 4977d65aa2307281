// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/spectrummodel.h"

#include "spectrum/pointeditor.h"
#include "spectrum/points.h"
#include "widgets/undoabletext.h"
#include "widgets/waitcursor.h"

#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QTimer>

#include <chrono>

namespace
{

constexpr std::chrono::milliseconds readDelay(2000);

} // namespace

SpectrumModel::SpectrumModel(QObject *parent, QPlainTextEdit *pointEditor)
    : MyStandardItemModel(parent), debounceTimer(new QTimer(this)), textEdit(pointEditor)
{
    setRowCount(1);
    setColumnCount(spectrumColumnCount);
    debounceTimer->setInterval(readDelay);
    debounceTimer->setSingleShot(true);
    connect(debounceTimer, &QTimer::timeout, this, &SpectrumModel::emitSpectrumDataChanged);
    if (textEdit) {
        connect(textEdit, &QPlainTextEdit::textChanged, this, [this] {
            if (!updatingText)
                debounceTimer->start();
        });
    }
}

SpectrumModel::~SpectrumModel() = default;

QVariant SpectrumModel::value(SpectrumColumn column) const
{
    return data(index(0, static_cast<int>(column)), Qt::EditRole);
}

bool SpectrumModel::setValue(SpectrumColumn column, const QVariant &value)
{
    return setData(index(0, static_cast<int>(column)), value, Qt::EditRole);
}

void SpectrumModel::loadFromJson(const QJsonObject &obj)
{
    const QSignalBlocker blocker(this);
    const SpectrumRecord record = SpectrumRecord::fromJson(obj);
    setValue(SpectrumColumn::Type, record.type);
    setValue(SpectrumColumn::LineSpectrum, record.isLineSpectrum);
    for (std::size_t i = 0; i < spectrumTextFields.size(); ++i)
        setValue(spectrumTextFields[i].column, record.texts[i]);
    setPointLines(record.pointLines);
    setTextEditText();
}

QJsonObject SpectrumModel::toJson() const
{
    SpectrumRecord record;
    record.type = value(SpectrumColumn::Type).toInt();
    record.isLineSpectrum = value(SpectrumColumn::LineSpectrum).toBool();
    for (std::size_t i = 0; i < spectrumTextFields.size(); ++i)
        record.texts[i] = value(spectrumTextFields[i].column).toString();
    return record.toJson(getXYVectors());
}

QList<QPointF> SpectrumModel::getXYVectors() const
{
    return parsedLines.isSharedWith(pointLines) ? parsedPoints : parsePoints(pointLines);
}

void SpectrumModel::setTextEditText()
{
    debounceTimer->stop();
    if (!textEdit)
        return;
    const QScopedValueRollback guard(updatingText, true);
    wrapLinesUnlessMany(textEdit, pointLines.size());
    textEdit->setPlainText(pointLines.join(QLatin1Char('\n')));
}

void SpectrumModel::readPendingPoints()
{
    if (!debounceTimer->isActive())
        return;
    debounceTimer->stop();
    emitSpectrumDataChanged();
}

void SpectrumModel::dropPendingPoints()
{
    debounceTimer->stop();
}

bool SpectrumModel::lastReadFoundChanges() const
{
    return readFoundChanges;
}

void SpectrumModel::normalizeSpectrum()
{
    constexpr int energyDecimals = 4;
    constexpr int intensityDecimals = 2;
    const WaitCursor waitCursor;
    if (const std::optional<QList<QPointF>> points = normalised(getXYVectors()))
        rewritePoints(fixedPointLines(*points, energyDecimals, intensityDecimals));
}

void SpectrumModel::makePointsSparser()
{
    constexpr int energyDecimals = 3;
    constexpr int intensityDecimals = 2;
    if (value(SpectrumColumn::LineSpectrum).toBool()) {
        warn(tr("Cannot resample line spectra"));
        return;
    }
    const auto resample = [this] {
        const WaitCursor waitCursor;
        const std::variant<QList<QPointF>, ResampleError> result = resampled(getXYVectors());
        if (const auto *points = std::get_if<QList<QPointF>>(&result))
            rewritePoints(fixedPointLines(*points, energyDecimals, intensityDecimals));
        return std::holds_alternative<ResampleError>(result)
               && std::get<ResampleError>(result) == ResampleError::GridTooLarge;
    };
    if (resample())
        warn(tr("Energy range too large to resample"));
}

void SpectrumModel::emitSpectrumDataChanged()
{
    readFoundChanges = false;
    if (!updatingText && textEdit) {
        const QStringList lines = splitPointLines(textEdit->toPlainText());
        readFoundChanges = lines != pointLines;
        if (readFoundChanges)
            setPointLines(lines);
    }
    emit spectrumDataChanged();
}

// The chart, a save, normalising and resampling share these numbers: they are parsed once.
void SpectrumModel::setPointLines(const QStringList &lines)
{
    pointLines = lines;
    parsedLines = lines;
    parsedPoints = parsePoints(lines);
}

// Makes lines the points and the editor's text, in one undo step.
void SpectrumModel::rewritePoints(const QStringList &lines)
{
    debounceTimer->stop();
    readFoundChanges = false;
    setPointLines(lines);
    if (textEdit) {
        const QScopedValueRollback guard(updatingText, true);
        replaceTextUndoably(textEdit, lines.join(QLatin1Char('\n')));
    }
    emit spectrumDataChanged();
}

void SpectrumModel::warn(const QString &text)
{
    QMessageBox::warning(qobject_cast<QWidget *>(parent()), tr("Error"), text, QMessageBox::Ok);
}
