// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"
#include "fuzz/invariant.h"
#include "pictures/picture.h"
#include "support/closedboxes.h"
#include "support/expecteddocument.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto speciesKey = "Species"_L1;
constexpr auto imageKey = "StructuralFormula"_L1;

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    REQUIRE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

QByteArray read(const QString &path)
{
    QFile file(path);
    REQUIRE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

// The file's object without its image, which is compared as a picture.
QJsonObject withoutImage(QJsonObject file)
{
    QJsonObject species = file[speciesKey].toObject();
    species.remove(imageKey);
    file[speciesKey] = species;
    return file;
}

class LoadingWindow
{
public:
    // Loads a file of these bytes, saves it, and does both again with what was saved.
    void loadAndSave(const QByteArray &bytes)
    {
        write(m_path, bytes);
        const std::optional<QJsonObject> file = expectedSpeciesFileIn(bytes);
        REQUIRE_EQUAL(m_window.isValidSpeciesFile(m_path), file.has_value());
        if (!file) {
            testRefusal();
            return;
        }
        const QByteArray once = loadedAndSaved(*file);
        const QByteArray twice = loadedAndSaved(QJsonDocument::fromJson(once).object());
        const auto imageIn = [](const QByteArray &saved) {
            return QJsonDocument::fromJson(saved).object()[speciesKey][imageKey];
        };
        REQUIRE_EQUAL(imageIn(twice), imageIn(once));
    }

private:
    void testRefusal()
    {
        const QString title = m_window.windowTitle();
        REQUIRE(!m_window.loadSpeciesFile(m_path));
        REQUIRE_EQUAL(m_boxes.take(), QStringList(u"Invalid Species File: The file "_s + m_path
                                                  + u" is not a valid species file."_s));
        REQUIRE(!m_window.loadJSONSpecies(m_path));
        REQUIRE_EQUAL(m_boxes.take(),
                      QStringList(u"Error: Species not found in JSON file. Load aborted."_s));
        REQUIRE_EQUAL(m_window.windowTitle(), title);
    }

    QByteArray loadedAndSaved(const QJsonObject &file)
    {
        REQUIRE(m_window.loadSpeciesFile(m_path));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        REQUIRE_EQUAL(m_window.windowTitle(), u"ZORAVEL Entry Edit - entry.json"_s);
        m_window.saveSpecies();
        REQUIRE_EQUAL(m_boxes.take(), QStringList());
        REQUIRE_EQUAL(m_window.windowTitle(), u"ZORAVEL Entry Edit - entry.json"_s);
        QByteArray saved = read(m_path);
        const QJsonObject object = QJsonDocument::fromJson(saved).object();
        REQUIRE_EQUAL(withoutByteOrderMarks(withoutImage(object)),
                      withoutByteOrderMarks(expectedSpeciesFile(file)));
        REQUIRE(isSamePicture(expectedImage(object[speciesKey].toObject()),
                              expectedImage(file[speciesKey].toObject())));
        return saved;
    }

    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(u"entry.json"_s);
    MainWindow m_window;
    ClosedBoxes m_boxes;
};

} // namespace

// Any bytes as a species file, opened and saved by the real window.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static auto *window = new LoadingWindow;
    window->loadAndSave(bytesOf(data, size));
    return 0;
}
