// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/filenames.h"

#include "files/jsonfolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

namespace fs = std::filesystem;

namespace
{

fs::path nativePath(const QByteArray &name)
{
#ifdef Q_OS_WIN
    return fs::path(QString::fromUtf8(name).toStdU16String());
#else
    return fs::path(name.toStdString());
#endif
}

QByteArray nameOf(const fs::path &path)
{
#ifdef Q_OS_WIN
    return QString::fromStdU16String(path.u16string()).toUtf8();
#else
    return QByteArray::fromStdString(path.native());
#endif
}

bool isText(const QByteArray &name)
{
    return QUtf8StringView(name).isValidUtf8();
}

// A link to path in a private folder of this process; empty if it cannot be made.
QString linkTo(const fs::path &path)
{
    static const QTemporaryDir folder;
    static int count = 0;
    std::error_code error;
    const fs::path target = fs::absolute(path, error);
    const QString link = folder.filePath(QString::number(++count) + QLatin1String(".json"));
    if (!error)
        fs::create_symlink(target, nativePath(QFile::encodeName(link)), error);
    return error ? QString() : link;
}

QByteArray childName(const QByteArray &folder, const QByteArray &child)
{
    return folder.endsWith('/') ? QByteArray(folder + child) : QByteArray(folder + '/' + child);
}

// The subfolders, and the JSON files that Qt does not list: names that are not UTF-8, links that
// lead nowhere, pipes.
struct RawListing {
    QByteArrayList otherFiles;
    QByteArrayList subfolders;
    bool complete = true;
};

RawListing listRaw(const QByteArray &folder)
{
    RawListing listing;
    std::error_code error;
    fs::directory_iterator it(nativePath(folder), error);
    for (; !error && it != fs::directory_iterator(); it.increment(error)) {
        const QByteArray name = nameOf(it->path().filename());
        std::error_code unknown;
        if (name.startsWith('.'))
            continue;
        if (fs::is_directory(it->symlink_status(unknown))) {
            listing.subfolders.append(name);
            continue;
        }
        const bool isFile = it->is_regular_file(unknown);
        if (name.toLower().endsWith(".json") && !it->is_directory(unknown)
            && !(isFile && isText(name)))
            listing.otherFiles.append(name);
    }
    listing.complete = !error;
    return listing;
}

// Names in natural order. Those that are not UTF-8 are sorted by their readable part.
QByteArrayList inNaturalOrder(QByteArrayList names)
{
    std::sort(names.begin(), names.end());
    QHash<QString, QByteArrayList> byText;
    QStringList texts;
    for (const QByteArray &name : std::as_const(names)) {
        const QString text = QString::fromUtf8(name);
        texts.append(text);
        byText[text].append(name);
    }
    sortNaturally(texts);
    QByteArrayList sorted;
    for (const QString &text : std::as_const(texts))
        sorted.append(byText[text].takeFirst());
    return sorted;
}

class Lister
{
public:
    explicit Lister(const QByteArray &leftOut) : m_leftOut(canonical(leftOut)) {}

    // A folder that is named on the command line.
    void addOperand(const QByteArray &folder)
    {
        const qsizetype before = m_inputs.files.size() + m_inputs.unreadableFolders.size();
        addFolder(folder, libraryPath(folder));
        if (m_inputs.files.size() + m_inputs.unreadableFolders.size() == before)
            m_inputs.emptyFolders.append(folder);
    }

    void addFile(const QByteArray &name) { m_inputs.files.append({name, libraryPath(name)}); }

    InputList takeInputs() { return std::move(m_inputs); }

private:
    void addFolder(const QByteArray &folder, const QString &path)
    {
        const RawListing raw = listRaw(folder);
        if (!raw.complete)
            m_inputs.unreadableFolders.append(folder);
        for (const QByteArray &file : jsonFiles(path, raw.otherFiles)) {
            const QByteArray name = childName(folder, file);
            if (m_leftOut.empty() || canonical(name) != m_leftOut)
                m_inputs.files.append({name, childPath(path, file, name), false});
        }
        for (const QByteArray &subfolder : inNaturalOrder(raw.subfolders)) {
            const QByteArray name = childName(folder, subfolder);
            addFolder(name, childPath(path, subfolder, name));
        }
    }

    static fs::path canonical(const QByteArray &name)
    {
        std::error_code error;
        return name.isEmpty() ? fs::path() : fs::weakly_canonical(nativePath(name), error);
    }

    static QByteArrayList jsonFiles(const QString &path, const QByteArrayList &otherFiles)
    {
        QByteArrayList names;
        for (const QString &name : jsonFilesIn(path))
            names.append(name.toUtf8());
        return otherFiles.isEmpty() ? names : inNaturalOrder(names + otherFiles);
    }

    static QString childPath(const QString &path, const QByteArray &child, const QByteArray &name)
    {
        return isText(child) ? QDir(path).filePath(QString::fromUtf8(child)) : libraryPath(name);
    }

    fs::path m_leftOut;
    InputList m_inputs;
};

} // namespace

QString libraryPath(const QByteArray &name)
{
    if (!isText(name))
        return linkTo(nativePath(name));
    // Qt takes a name that begins with a colon for a resource.
    const QString path = QString::fromUtf8(name);
    return path.startsWith(QLatin1Char(':')) ? QString(QLatin1String("./") + path) : path;
}

QByteArray shownName(const QByteArray &name)
{
    const auto isControl = [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; };
    QByteArray shown;
    for (const char c : name) {
        if (c == '\n')
            shown += "\\n";
        else if (c == '\t')
            shown += "\\t";
        else if (isControl(c))
            shown += "\\x" + QByteArray(1, c).toHex();
        else
            shown += c;
    }
    return shown;
}

InputList listInputs(const QByteArrayList &operands, const QByteArray &leftOut)
{
    Lister lister(leftOut);
    for (const QByteArray &operand : operands) {
        std::error_code error;
        if (fs::is_directory(nativePath(operand), error))
            lister.addOperand(operand);
        else
            lister.addFile(operand);
    }
    return lister.takeInputs();
}

OutputFile::OutputFile(const QByteArray &name)
{
    if (isText(name)) {
        m_path = libraryPath(name);
        return;
    }
    // Links in the name are followed, as the libraries do.
    std::error_code error;
    const fs::path target = fs::weakly_canonical(nativePath(name), error);
    if (error)
        return;
    static int count = 0;
    m_name = nameOf(target);
    m_path = QDir(libraryPath(nameOf(target.parent_path())))
                 .filePath(QStringLiteral("zoravel-%1-%2.tmp")
                               .arg(QCoreApplication::applicationPid())
                               .arg(++count));
}

OutputFile::~OutputFile()
{
    if (!m_name.isEmpty())
        QFile::remove(m_path);
}

bool OutputFile::putInPlace()
{
    if (m_name.isEmpty())
        return !m_path.isEmpty();
    const fs::path written = nativePath(QFile::encodeName(m_path));
    const fs::path target = nativePath(m_name);
    std::error_code error;
    const fs::file_status old = fs::status(target, error);
    if (fs::is_regular_file(old))
        fs::permissions(written, old.permissions(), error);
    else if (fs::exists(old))
        return false;
    fs::rename(written, target, error);
    if (!error)
        m_name.clear();
    return !error;
}
