// SPDX-License-Identifier: GPL-3.0-or-later
#include "monkey/monkey.h"
#include "spectrum/spectrumwindow.h"
#include "widgets/cleantextedit.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>

namespace
{

struct Field {
    const char *name;
    const char *key;
};

constexpr Field speciesFields[] = {
    {"lineEditSpecies", "Name"},
    {"textEditAliases", "Aliases"},
    {"lineEditSumFormula", "Formula"},
    {"lineEditInChI", "InChI"},
    {"lineEditCAS", "CAS"},
    {"lineEditCID", "PubChem"},
    {"lineEditAIE", "AIE"},
    {"lineEditVIE", "VIE"},
    {"lineEditAIEComment", "AIE_Comment"},
    {"lineEditVIEComment", "VIE_Comment"},
};

constexpr const char *spectrumFields[] = {
    "lineEditTitle",      "lineEditUploader", "lineEditSpectDOI",     "textEditCitations",
    "lineEditSourceT",    "textEditComments", "lineEditFacilityDate", "lineEditSource",
    "lineEditResolution", "lineEditFlux",
};

const QString noSpectrum = QStringLiteral("No spectrum window is selected.");

} // namespace

void Monkey::press(QWidget *widget, int key, const QString &text, Qt::KeyboardModifiers modifiers)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers, text);
        QCoreApplication::sendEvent(widget, &event);
    }
}

void Monkey::typeText(QWidget *widget, const QString &text)
{
    for (const QChar c : text) {
        if (c == QLatin1Char('\n'))
            press(widget, Qt::Key_Return, QStringLiteral("\r"));
        else
            press(widget, 0, c);
    }
}

QString Monkey::anyText()
{
    const QString characters =
        QStringLiteral("abcdefXYZ0123456789.,;-+()/\u03bd\u00e9\u4e2d\u2192");
    QString text;
    for (int i = 1 + below(12); i > 0; --i)
        text += characters[below(static_cast<int>(characters.size()))];
    return below(4) ? text : text + QLatin1Char(' ') + text;
}

QString Monkey::anyPointLine()
{
    const double x = 10 + 0.0001 * below(3000);
    const double y = 0.01 * below(100000) - 50;
    switch (below(8)) {
    case 0:
        return QStringLiteral("%1,%2").arg(x).arg(y);
    case 1:
        return QStringLiteral(" %1\t;%2 ").arg(x).arg(y);
    case 2:
        return QString::number(x).replace(QLatin1Char('.'), QLatin1Char(',')) + QStringLiteral("; ")
               + QString::number(y);
    case 3:
        return QStringLiteral("%1 %2 1").arg(x).arg(y);
    case 4:
        return QStringLiteral("hv I");
    case 5:
        return QString::number(x, 'e', 9) + QLatin1Char(' ') + QString::number(y, 'e', 9);
    default:
        return QStringLiteral("%1 %2").arg(x).arg(y);
    }
}

// Types over a part of the text, or behind it, perhaps with a slip.
void Monkey::edit(CleanTextEdit *editor, const QString &text)
{
    editor->setFocus();
    QTextCursor cursor = editor->textCursor();
    const int length = editor->document()->characterCount() - 1;
    switch (below(6)) {
    case 0:
        cursor.select(QTextCursor::Document);
        break;
    case 1:
        cursor.setPosition(below(length + 1));
        cursor.setPosition(below(length + 1), QTextCursor::KeepAnchor);
        break;
    default:
        cursor.movePosition(QTextCursor::End);
        break;
    }
    editor->setTextCursor(cursor);
    const QString plain = editor->toPlainText();
    const QString wanted =
        plain.first(cursor.selectionStart()) + text + plain.sliced(cursor.selectionEnd());
    typeText(editor, text);
    if (editor->toPlainText() != wanted)
        fail(QStringLiteral("the field shows \"%1\", must show \"%2\"")
                 .arg(editor->toPlainText(), wanted));
    if (below(3) == 0)
        press(editor, Qt::Key_Backspace);
}

CleanTextEdit *Monkey::anySpeciesField(QString &key)
{
    const Field &field = speciesFields[below(static_cast<int>(std::size(speciesFields)))];
    key = QString::fromLatin1(field.key);
    return find<CleanTextEdit>(m_window, QString::fromLatin1(field.name));
}

void Monkey::typeInSpecies()
{
    QString key;
    CleanTextEdit *editor = anySpeciesField(key);
    const bool breaks = key == QLatin1String("Aliases") && below(2) == 0;
    edit(editor, breaks ? anyText() + QLatin1Char('\n') + anyText() : anyText());
    m_document.texts[key] = editor->cleanedHtml();
    if (below(2))
        press(editor, Qt::Key_Tab, QStringLiteral("\t"));
}

void Monkey::typeMass()
{
    auto *editor = find<CleanTextEdit>(m_window, QStringLiteral("lineEditMass"));
    edit(editor, below(5) ? QString::number(0.001 * below(500000)) : anyText());
    bool isNumber = false;
    const double mass = editor->cleanedHtml().toDouble(&isNumber);
    m_document.mass = isNumber ? mass : 0;
}

void Monkey::typeInSpectrum()
{
    if (current() < 0)
        return;
    const int index = current();
    const QString name =
        QString::fromLatin1(spectrumFields[below(static_cast<int>(std::size(spectrumFields)))]);
    auto *editor = find<CleanTextEdit>(*spectrumWindows().at(index), name);
    edit(editor, anyText());
    ExpectedSpectrum &spectrum = m_document.spectra[index];
    spectrum.texts[spectrum.keyOf(name)] = editor->cleanedHtml();
}

void Monkey::undoInSpecies()
{
    QString key;
    CleanTextEdit *editor = anySpeciesField(key);
    editor->setFocus();
    const QString before = editor->cleanedHtml();
    for (int i = below(3); i >= 0; --i)
        editor->undo();
    if (below(3) == 0)
        editor->redo();
    if (editor->cleanedHtml() != before)
        m_document.texts[key] = editor->cleanedHtml();
}

void Monkey::format()
{
    QString key;
    CleanTextEdit *editor = anySpeciesField(key);
    editor->setFocus();
    QTextCursor cursor = editor->textCursor();
    const int length = editor->document()->characterCount() - 1;
    cursor.setPosition(below(length + 1));
    cursor.setPosition(below(length + 1), QTextCursor::KeepAnchor);
    editor->setTextCursor(cursor);
    const QString plain = editor->toPlainText();
    m_answers.expect(QMessageBox::Discard, {}, {QStringLiteral("Please select text to format.")});
    const char *action = below(2) ? "actionSubscript" : "actionSuperscript";
    find<QAction>(m_window, QString::fromLatin1(action))->trigger();
    if (editor->toPlainText() != plain)
        fail(QStringLiteral("formatting changes the text"));
    if (cursor.hasSelection())
        m_document.texts[key] = editor->cleanedHtml();
}

void Monkey::pasteIntoField()
{
    QString key;
    CleanTextEdit *editor = anySpeciesField(key);
    auto *data = new QMimeData;
    const QString text = anyText();
    data->setText(text);
    if (below(2))
        data->setHtml(QStringLiteral("<b>%1</b><img src='file:///etc/hostname'>").arg(text));
    QGuiApplication::clipboard()->setMimeData(data);
    editor->setFocus();
    editor->moveCursor(QTextCursor::End);
    const QString wanted = editor->toPlainText() + text;
    editor->paste();
    if (editor->toPlainText() != wanted)
        fail(QStringLiteral("pasted: \"%1\", must be \"%2\"").arg(editor->toPlainText(), wanted));
    m_document.texts[key] = editor->cleanedHtml();
}

void Monkey::pasteImage()
{
    QImage image(20 + below(60), 20 + below(60),
                 below(2) ? QImage::Format_RGB32 : QImage::Format_ARGB32);
    image.fill(QColor::fromRgb(below(256), below(256), below(256)));
    image.setPixel(below(20), below(20), 0xff0000ff);
    QGuiApplication::clipboard()->setImage(image);
    m_window.pasteImageFromClipboard();
    m_document.setImage(image);
}

void Monkey::clearImage()
{
    m_window.clearImage();
    m_document.setImage({});
}

void Monkey::newSpectrum()
{
    find<QAction>(m_window, QStringLiteral("actionNew"))->trigger();
    m_document.spectra.append(ExpectedSpectrum());
}

void Monkey::deleteSpectrum()
{
    const int index = current();
    find<QAction>(m_window, QStringLiteral("actionDelete"))->trigger();
    if (index >= 0)
        m_document.spectra.removeAt(index);
}

void Monkey::switchSpectrum()
{
    const QList<QMdiSubWindow *> windows = m_area->subWindowList();
    if (windows.isEmpty())
        return;
    QMdiSubWindow *window = windows[below(static_cast<int>(windows.size()))];
    m_area->setActiveSubWindow(window);
    if (m_area->currentSubWindow() != window)
        fail(QStringLiteral("the spectrum does not become the current one"));
}

void Monkey::changeType()
{
    if (current() < 0)
        return;
    const int type = below(6);
    find<QComboBox>(*spectrumWindows().at(current()), QStringLiteral("comboBoxType"))
        ->setCurrentIndex(type);
    m_document.spectra[current()].type = type;
}

void Monkey::toggleLine()
{
    if (current() < 0)
        return;
    auto *box =
        find<QCheckBox>(*spectrumWindows().at(current()), QStringLiteral("checkBoxLineSpectrum"));
    box->click();
    m_document.spectra[current()].isLine = box->isChecked();
}

void Monkey::typePoints()
{
    const int index = current();
    if (index < 0)
        return;
    QPlainTextEdit *editor = pointEditor(index);
    ExpectedSpectrum &spectrum = m_document.spectra[index];
    if (editor->toPlainText() != spectrum.editorText)
        fail(QStringLiteral("the point editor shows another text"));
    editor->setFocus();
    QString wanted = spectrum.editorText;
    if (below(12) == 0) {
        editor->selectAll();
        wanted.clear();
    } else {
        editor->moveCursor(QTextCursor::End);
    }
    for (int i = 1 + below(4); i > 0; --i) {
        const QString text = wanted.isEmpty() ? anyPointLine() : QLatin1Char('\n') + anyPointLine();
        typeText(editor, text);
        wanted += text;
    }
    if (editor->toPlainText() != wanted)
        fail(QStringLiteral("the point editor does not show what was typed"));
    spectrum.editorText = wanted;
    spectrum.isPending = true;
}

void Monkey::undoPoints()
{
    const int index = current();
    if (index < 0)
        return;
    QPlainTextEdit *editor = pointEditor(index);
    editor->setFocus();
    for (int i = below(3); i >= 0; --i)
        editor->undo();
    if (below(3) == 0)
        editor->redo();
    ExpectedSpectrum &spectrum = m_document.spectra[index];
    if (editor->toPlainText() == spectrum.editorText)
        return;
    spectrum.editorText = editor->toPlainText();
    spectrum.isPending = true;
}

void Monkey::commaToDot()
{
    if (current() < 0)
        return;
    ExpectedSpectrum &spectrum = m_document.spectra[current()];
    find<QPushButton>(*spectrumWindows().at(current()), QStringLiteral("buttonCommaToDot"))
        ->click();
    spectrum.editorText.replace(QLatin1Char(','), QLatin1Char('.'));
    spectrum.isPending = true;
}

void Monkey::normalise()
{
    if (current() < 0)
        return;
    syncReadings();
    find<QPushButton>(*spectrumWindows().at(current()), QStringLiteral("buttonNormalize"))->click();
    m_document.spectra[current()].normalise();
}

void Monkey::resample()
{
    if (current() < 0)
        return;
    syncReadings();
    ExpectedSpectrum &spectrum = m_document.spectra[current()];
    m_answers.expect(QMessageBox::Discard, {}, {QStringLiteral("Cannot resample line spectra")});
    find<QPushButton>(*spectrumWindows().at(current()), QStringLiteral("buttonSparse"))->click();
    if (m_answers.boxes().size() != (spectrum.isLine ? 1 : 0))
        fail(QStringLiteral("a line spectrum must be refused, no other"));
    if (!spectrum.isLine)
        spectrum.resample();
}

// Two seconds without a key.
void Monkey::rest()
{
    const QList<SpectrumWindow *> windows = spectrumWindows();
    for (qsizetype i = 0; i < windows.size(); ++i) {
        windows[i]->readPendingPoints();
        m_document.spectra[i].read();
    }
}

void Monkey::copyAndPaste()
{
    syncReadings();
    const int index = current();
    m_answers.expect(QMessageBox::Discard, {}, {noSpectrum});
    m_window.copySpectrumToClipboard();
    if (index < 0)
        return;
    const QJsonObject copied =
        QJsonDocument::fromJson(QGuiApplication::clipboard()->text().toUtf8()).object();
    // What was just typed is read before.
    m_document.spectra[index].read();
    QJsonObject wanted = m_document.spectra[index].toJson();
    wanted[QLatin1String("Type")] = QStringLiteral("Spectrum v1");
    if (copied != wanted)
        fail(QStringLiteral("another spectrum is copied"));
    if (m_document.spectra.size() > 30)
        return;
    m_window.pasteSpectrumFromClipboard();
    m_document.spectra.append(ExpectedSpectrum(copied));
}

void Monkey::pasteNonsense()
{
    QGuiApplication::clipboard()->setText(below(2) ? anyText()
                                                   : QStringLiteral("{\"Type\": \"Species v1\"}"));
    m_answers.expect(QMessageBox::Discard, {},
                     {QStringLiteral("Clipboard does not contain a valid spectrum."),
                      QStringLiteral("Format error, cannot paste.")});
    m_window.pasteSpectrumFromClipboard();
    if (m_answers.boxes().size() != 1)
        fail(QStringLiteral("what is no spectrum must be refused"));
}

void Monkey::saveSpectrum()
{
    if (current() < 0)
        return;
    const QString path = m_folder.filePath(QStringLiteral("spectrum.txt"));
    QFile::remove(path);
    m_answers.expect(QMessageBox::Discard, path);
    m_window.saveSpectrumToFile();
    // What was just typed is read before.
    m_document.spectra[current()].read();
    QJsonObject wanted = m_document.spectra[current()].toJson();
    wanted[QLatin1String("Type")] = QStringLiteral("Spectrum v1");
    QFile file(path);
    const QJsonObject saved = file.open(QIODevice::ReadOnly)
                                  ? QJsonDocument::fromJson(file.readAll()).object()
                                  : QJsonObject();
    if (saved != wanted)
        fail(QStringLiteral("another spectrum is saved"));
}

void Monkey::loadSpectrum()
{
    const QString path = m_folder.filePath(QStringLiteral("spectrum.txt"));
    if (!QFile::exists(path) || m_document.spectra.size() > 30)
        return;
    m_answers.expect(QMessageBox::Discard, path);
    if (!m_window.loadJSONSpectrum())
        fail(QStringLiteral("the saved spectrum does not load"));
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        m_document.spectra.append(
            ExpectedSpectrum(QJsonDocument::fromJson(file.readAll()).object()));
}
