// SPDX-License-Identifier: GPL-3.0-or-later
#include "monkey/monkey.h"
#include "support/mainwindowfixture.h"

#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace
{

QJsonObject objectIn(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

int numberIn(const QString &name)
{
    static const QRegularExpression digits(QStringLiteral("\\d+"));
    return digits.match(name).captured().toInt();
}

} // namespace

// The entries in the order of stepping: what else is in the folder comes after them.
QStringList Monkey::entries() const
{
    QStringList names = m_folder.entryList({QStringLiteral("e*.json")}, QDir::Files);
    std::sort(names.begin(), names.end(), [](const QString &left, const QString &right) {
        return numberIn(left) < numberIn(right);
    });
    return names;
}

QString Monkey::anyEntry()
{
    const QStringList names = entries();
    return m_folder.filePath(names[below(static_cast<int>(names.size()))]);
}

QMessageBox::StandardButton Monkey::expectPrompt(const QStringList &texts)
{
    static const QMessageBox::StandardButton buttons[] = {
        QMessageBox::Save, QMessageBox::Discard, QMessageBox::Discard, QMessageBox::Cancel};
    const QMessageBox::StandardButton answer = buttons[below(4)];
    // An untitled document asks for a file.
    const QString path = m_file.isEmpty() && below(2)
                             ? m_folder.filePath(QStringLiteral("e%1.json").arg(below(12)))
                             : QString();
    m_answers.expect(answer, path, texts);
    m_promptPath = path;
    note(QStringLiteral("  prompt %1, file %2").arg(answer).arg(path));
    return answer;
}

bool Monkey::afterPrompt(QMessageBox::StandardButton answer, const QJsonObject &before)
{
    if (!m_answers.wasPrompted()) {
        // What differs from the file must never go without a question.
        if (!difference(before, m_stored).isEmpty())
            fail(QStringLiteral("changes were discarded without a question: ")
                 + difference(before, m_stored));
        return true;
    }
    if (answer == QMessageBox::Save && m_file.isEmpty())
        m_file = m_promptPath;
    if (answer == QMessageBox::Save && !m_file.isEmpty()) {
        const QString error = difference(objectIn(m_file), before);
        if (!error.isEmpty())
            fail(QStringLiteral("saved in the prompt: ") + error);
        m_stored = before;
        ++m_saves;
    }
    return answer != QMessageBox::Cancel;
}

void Monkey::checkSaved()
{
    const QString mark = QStringLiteral(" *");
    if (m_window.windowTitle().endsWith(mark))
        fail(QStringLiteral("the title has its mark after a save"));
}

// The file holds the document and loads as the same one in another window.
void Monkey::savedAs(const QString &path)
{
    const QJsonObject saved = objectIn(path);
    const QString beforeReading = difference(saved, m_document.toJson());
    syncReadings();
    const QString afterReading = difference(saved, m_document.toJson());
    if (!beforeReading.isEmpty() && !afterReading.isEmpty())
        fail(QStringLiteral("saved: ") + afterReading);
    m_stored = saved;
    ++m_saves;

    ExpectedDocument again;
    again.load(saved);
    const QString copy = m_folder.filePath(QStringLiteral("copy.txt"));
    QFile::remove(copy);
    if (!m_reader.loadSpeciesFile(path))
        fail(QStringLiteral("the saved file does not load"));
    m_answers.expect(QMessageBox::Discard, copy);
    m_reader.saveSpeciesAs();
    again.hasImageKey = objectIn(copy)[QLatin1String("Species")].toObject().contains(
        QLatin1String("StructuralFormula"));
    const QString error = difference(objectIn(copy), again.toJson());
    if (!error.isEmpty())
        fail(QStringLiteral("saved and loaded: ") + error);
    m_reader.cleanUp();
}

void Monkey::save()
{
    if (m_file.isEmpty()) {
        saveAs();
        return;
    }
    syncReadings();
    m_window.saveSpecies();
    checkSaved();
    savedAs(m_file);
}

void Monkey::saveAs()
{
    const QString path = m_folder.filePath(QStringLiteral("e%1.json").arg(below(12)));
    note(path);
    syncReadings();
    m_answers.expect(QMessageBox::Discard, path);
    m_window.saveSpeciesAs();
    m_file = path;
    checkSaved();
    savedAs(path);
}

void Monkey::loaded(const QString &path)
{
    const QJsonObject file = objectIn(path);
    const bool hadImageKey = m_document.hasImageKey;
    m_document.load(file);
    m_document.hasImageKey = m_document.hasImageKey || hadImageKey;
    m_file = path;
    m_stored = m_document.toJson();
    const QString title = m_window.windowTitle();
    if (title != QStringLiteral("ZORAVEL Entry Edit - ") + QFileInfo(path).fileName())
        fail(QStringLiteral("the title is \"%1\" after a load").arg(title));
}

void Monkey::load()
{
    const QString path = anyEntry();
    note(path);
    rest();
    const QJsonObject before = m_document.toJson();
    const QMessageBox::StandardButton answer = expectPrompt();
    const bool isLoaded = m_window.loadSpeciesFile(path);
    if (isLoaded != afterPrompt(answer, before))
        fail(QStringLiteral("loaded or not, against the answer"));
    if (isLoaded)
        loaded(path);
}

void Monkey::loadByDialog()
{
    // The prompt comes after the file dialog, so that both cannot have different paths here.
    save();
    const QString path = anyEntry();
    note(path);
    rest();
    m_answers.expect(QMessageBox::Discard, path);
    m_window.loadSpeciesFromFile();
    loaded(path);
}

void Monkey::loadWhatIsNoEntry()
{
    const QString path =
        m_folder.filePath(below(2) ? QStringLiteral("x-broken.json") : QStringLiteral("none.json"));
    rest();
    const QJsonObject before = m_document.toJson();
    const QMessageBox::StandardButton answer =
        expectPrompt({QStringLiteral("The file %1 does not exist.").arg(path),
                      QStringLiteral("The file %1 is not a valid species file.").arg(path)});
    if (m_window.loadSpeciesFile(path))
        fail(QStringLiteral("what is no entry is loaded"));
    afterPrompt(answer, before);
}

void Monkey::drop()
{
    const QString path = anyEntry();
    note(path);
    rest();
    const QJsonObject before = m_document.toJson();
    const QMessageBox::StandardButton answer = expectPrompt();
    dropFiles(&m_window, {path});
    if (afterPrompt(answer, before))
        loaded(path);
}

void Monkey::step()
{
    if (m_file.isEmpty())
        return;
    const int step = below(2) ? 1 : -1;
    rest();
    const QJsonObject before = m_document.toJson();
    const QString from = QFileInfo(m_file).fileName();
    const QMessageBox::StandardButton answer =
        expectPrompt({QStringLiteral("No other species JSON files found in the directory.")});
    const bool isLoaded = m_window.navigateSpeciesFiles(m_file, step);
    const bool mayGo = afterPrompt(answer, before);
    const QStringList names = entries();
    const qsizetype next = (names.indexOf(from) + names.size() + step) % names.size();
    if (isLoaded != mayGo)
        fail(QStringLiteral("stepped or not, against the answer"));
    if (isLoaded)
        loaded(m_folder.filePath(names[next]));
}

void Monkey::selectFolder()
{
    rest();
    const QJsonObject before = m_document.toJson();
    const QMessageBox::StandardButton answer = expectPrompt();
    const QString first = m_folder.filePath(entries().constFirst());
    const bool isLoaded = m_window.navigateSpeciesFiles(m_folder.path(), 0);
    if (isLoaded != afterPrompt(answer, before))
        fail(QStringLiteral("loaded or not, against the answer"));
    if (isLoaded)
        loaded(first);
}

void Monkey::clean()
{
    rest();
    const QJsonObject before = m_document.toJson();
    const QMessageBox::StandardButton answer = expectPrompt();
    m_window.cleanUp();
    if (!afterPrompt(answer, before))
        return;
    m_document.clear();
    m_file.clear();
    m_stored = m_document.toJson();
    if (m_window.windowTitle() != QLatin1String("ZORAVEL Entry Edit - (untitled)"))
        fail(QStringLiteral("the title is \"%1\" after Clean").arg(m_window.windowTitle()));
}

void Monkey::close()
{
    rest();
    const QJsonObject before = m_document.toJson();
    const QMessageBox::StandardButton answer = expectPrompt();
    const bool isClosed = m_window.close();
    if (isClosed != afterPrompt(answer, before))
        fail(QStringLiteral("closed or not, against the answer"));
    m_window.show();
}

void Monkey::compile()
{
    const QString path = m_folder.filePath(QStringLiteral("database.txt"));
    QStringList files;
    for (const QString &name : entries())
        files.append(m_folder.filePath(name));
    if (!m_window.compileSpeciesFiles(files, path, QStringLiteral("1"), QStringLiteral("2"),
                                      QStringLiteral("t"), below(2)))
        fail(QStringLiteral("the database is not written"));
    const QJsonObject database = objectIn(path);
    int number = 1;
    for (const QString &file : std::as_const(files)) {
        QJsonObject entry = objectIn(file);
        entry.remove(QLatin1String("Type"));
        if (database[QStringLiteral("Entry%1").arg(number++)].toObject() != entry)
            fail(QStringLiteral("another entry in the database: ") + file);
    }
}
