// SPDX-License-Identifier: GPL-3.0-or-later
#include "faults/trial.h"

#include "species/speciesfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

void putFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Truncate;
    if (QFileInfo::exists(path)) // not through a link that leads nowhere
        mode |= QIODevice::ExistingOnly;
    if (!file.open(mode) || file.write(bytes) != bytes.size() || !file.flush())
        qFatal("cannot write %s", qPrintable(path));
}

QByteArray fileContents(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    return file.readAll();
}

QByteArray entryBytes(qsizetype size, const QString &name, int spectra)
{
    constexpr qsizetype pointSize = 42; // bytes of a line each for energy and intensity
    constexpr qsizetype emptySpectrum = 500;
    QList<QJsonObject> datasets;
    for (int spectrum = 0; spectrum < spectra; ++spectrum) {
        QJsonArray energies;
        QJsonArray intensities;
        const qsizetype count =
            std::max<qsizetype>(2, (size / spectra - emptySpectrum) / pointSize);
        for (qsizetype point = 0; point < count; ++point) {
            energies.append(10.0 + static_cast<double>(point % 90'000) / 10'000);
            intensities.append(static_cast<double>(point % 999) / 1000);
        }
        datasets.append({{u"Title"_s, name}, {u"E"_s, energies}, {u"I"_s, intensities}});
    }
    return QJsonDocument(speciesFileObject({{u"Name"_s, name}}, datasets)).toJson();
}

Trial::Trial(Editor::Operation operation, qsizetype size, const QString &folder,
             const QString &name)
    : m_operation(operation), m_folder(folder)
{
    static const QString usualNames[] = {u"entry.json"_s, u"other.json"_s, u"spectrum.json"_s,
                                         u"database.json"_s};
    if (!QDir().mkpath(folder))
        qFatal("cannot make %s", qPrintable(folder));
    const bool small = size < 1'000;
    const int spectra = small ? int(operation == Editor::SaveSpectrum) : size < 1'000'000 ? 1 : 4;
    const QString targetName = name.isEmpty() ? usualNames[operation] : name;
    const QString entryName = operation == Editor::Save ? targetName : u"entry.json"_s;
    m_entry = folder + u'/' + entryName;
    m_target = folder + u'/' + targetName;
    // An exported spectrum is as long as the document if it is the only one.
    const bool single = operation == Editor::SaveSpectrum;
    putFile(m_entry, entryBytes(size, u"Opened"_s, single ? 1 : spectra));
    if (operation == Editor::Compile) {
        m_inputs = {folder + u"/a.json"_s, folder + u"/b.json"_s};
        putFile(m_inputs[0], entryBytes(size, u"First"_s, spectra));
        putFile(m_inputs[1], entryBytes(size, u"Second"_s, spectra));
    }
}

Trial::Trial(Editor &editor, Editor::Operation operation, qsizetype size, const QString &folder,
             const QString &name)
    : Trial(operation, size, folder, name)
{
    open(editor);
    carryOutFirst();
    learn();
}

void Trial::open(Editor &editor)
{
    m_editor = &editor;
    m_editor->reset();
    if (!m_editor->open(m_entry))
        qFatal("cannot open %s", qPrintable(m_entry));
}

void Trial::carryOutFirst()
{
    type(0);
    carryOut([] {});
}

void Trial::learn()
{
    m_newBytes = fileContents(m_target);
    if (m_newBytes.count(text(0).toUtf8()) != 1)
        qFatal("the run without faults does not write what was typed");
    m_oldBytes = m_newBytes;
    m_oldBytes.replace(text(0).toUtf8(), "Old"_ba);
    m_names = QDir(m_folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                       | QDir::NoDotAndDotDot);
}

QString Trial::text(int number) const
{
    return u"Edited %1"_s.arg(number, 6, 10, QLatin1Char('0'));
}

QByteArray Trial::newBytes(int number) const
{
    return QByteArray(m_newBytes).replace(text(0).toUtf8(), text(number).toUtf8());
}

void Trial::putOldBytes() const
{
    putFile(m_target, m_oldBytes);
}

void Trial::type(int number)
{
    m_number = number;
    m_editor->type(m_operation, text(number));
}

void Trial::prepare(int number)
{
    putOldBytes();
    type(number);
}

bool Trial::holds(int number) const
{
    return fileContents(m_target) == (number == 0 ? m_oldBytes : newBytes(number));
}

void Trial::carryOut(const std::function<void()> &last)
{
    m_editor->carryOut(m_operation, m_target, m_inputs, last);
}

Trial::Result Trial::result() const
{
    const QByteArray bytes = fileContents(m_target);
    if (bytes == m_oldBytes)
        return Result::Old;
    return bytes == newBytes(m_number) ? Result::New : Result::Other;
}

bool Trial::failed() const
{
    return std::any_of(m_editor->boxes.begin(), m_editor->boxes.end(),
                       [](const Editor::Box &box) { return box.icon == QMessageBox::Warning; });
}

QString Trial::complaint() const
{
    static const QString warnings[] = {
        u"Could not open file for writing."_s, u"Could not open file for writing."_s,
        u"Could not open file for writing"_s, u"Failed to create species database."_s};
    const Result now = result();
    if (now == Result::Other)
        return u"the file is neither the old nor the new one"_s;
    if (failed() != (now == Result::Old))
        return now == Result::Old ? u"the file was not written, and nobody said so"_s
                                  : u"the file was written, and a box says that it was not"_s;
    if (failed() && m_editor->boxes.last().text != warnings[m_operation])
        return u"the last box says: "_s + m_editor->boxes.last().text;
    const qsizetype wanted = int(m_operation == Editor::Compile || failed());
    // A file that cannot be compiled has a box of its own.
    const qsizetype most = wanted + int(m_operation == Editor::Compile && failed());
    if (m_editor->boxes.size() < wanted || m_editor->boxes.size() > most)
        return u"%1 boxes came up"_s.arg(m_editor->boxes.size());
    if (m_editor->typed(m_operation) != text(m_number))
        return u"the edit is gone from the window"_s;
    const bool saves = m_operation == Editor::Save || m_operation == Editor::SaveAs;
    if (saves && m_editor->isModified() != failed())
        return u"the title is "_s + m_editor->title();
    if (m_operation == Editor::SaveSpectrum && !m_editor->isModified())
        return u"the document counts as saved after an export"_s;
    if (!leftovers().isEmpty())
        return u"left behind: "_s + leftovers().join(u", "_s);
    return {};
}

QStringList Trial::leftovers() const
{
    QStringList names = QDir(m_folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                                 | QDir::NoDotAndDotDot);
    for (const QString &name : m_names)
        names.removeOne(name);
    return names;
}

void Trial::removeLeftovers() const
{
    for (const QString &name : leftovers())
        QFile::remove(m_folder + u'/' + name);
}
