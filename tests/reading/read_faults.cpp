// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/mainwindow.h"
#include "pictures/picture.h"
#include "reading/variants.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumwindow.h"
#include "support/closedboxes.h"
#include "support/expecteddocument.h"
#include "support/mainwindowfixture.h"
#include "widgets/cleantextedit.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QTextStream>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

constexpr quint32 seed = 20'260'101;
constexpr auto speciesKey = "Species"_L1;
constexpr auto imageKey = "StructuralFormula"_L1;

const std::array fieldNames{"lineEditSpecies"_L1,    "textEditAliases"_L1,   "lineEditMass"_L1,
                            "lineEditSumFormula"_L1, "lineEditInChI"_L1,     "lineEditCAS"_L1,
                            "lineEditCID"_L1,        "lineEditAIE"_L1,       "lineEditVIE"_L1,
                            "lineEditAIEComment"_L1, "lineEditVIEComment"_L1};

// Qt's warnings, which count as faults.
QStringList warnings;

// Decoders complain about broken images, the platform about missing features, and fonts about
// unknown letters.
void noteWarning(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const bool isExpected = QByteArray(context.category).startsWith("qt.gui.imageio")
                            || text.startsWith("This plugin does not support "_L1)
                            || text.startsWith("  OpenType support missing "_L1)
                            || type == QtInfoMsg || type == QtDebugMsg;
    if (!isExpected)
        warnings.append(text);
}

QJsonObject withoutImage(QJsonObject file)
{
    QJsonObject species = file[speciesKey].toObject();
    species.remove(imageKey);
    file[speciesKey] = species;
    return file;
}

// An editor, and what must hold whatever file it is given.
class Editor
{
public:
    explicit Editor(const QString &folder) : m_path(folder + u"/entry.json"_s) {}

    // Gives it the variant in every way that there is; says what is wrong, or nothing.
    QString faultOf(const Variant &variant)
    {
        m_wrong.clear();
        QFile file(m_path);
        require(file.open(QIODevice::WriteOnly)
                    && file.write(variant.bytes) == variant.bytes.size(),
                u"the variant cannot be written"_s);
        file.close();
        const std::optional<QJsonObject> object =
            variant.object ? typed(*variant.object) : expectedSpeciesFileIn(variant.bytes);
        require(m_window.isValidSpeciesFile(m_path) == object.has_value(),
                u"isValidSpeciesFile is wrong"_s);
        if (object)
            testLoading(*object);
        else
            testRefusal();
        m_wrong += std::exchange(warnings, {});
        return m_wrong.join(u"; "_s);
    }

private:
    void require(bool condition, const QString &what)
    {
        if (!condition && !m_wrong.contains(what))
            m_wrong.append(what);
    }

    static std::optional<QJsonObject> typed(const QJsonObject &object)
    {
        const bool isSpeciesFile = object["Type"_L1] == QJsonValue(u"Species v1"_s);
        return isSpeciesFile ? std::optional(object) : std::nullopt;
    }

    [[nodiscard]] QList<SpectrumWindow *> spectra() const
    {
        QList<SpectrumWindow *> windows;
        for (const QMdiSubWindow *sub : m_window.findChild<QMdiArea *>()->subWindowList())
            windows.append(qobject_cast<SpectrumWindow *>(sub->widget()));
        return windows;
    }

    // The document as it stands in the window, as the file that a save would make of it.
    [[nodiscard]] QJsonObject document() const
    {
        QJsonObject file{{u"Type"_s, u"Species v1"_s}, {speciesKey, model()->toJson()}};
        int number = 0;
        for (const SpectrumWindow *window : spectra())
            file[u"Dataset%1"_s.arg(++number)] = window->toJson();
        return file;
    }

    [[nodiscard]] SpeciesModel *model() const { return m_window.findChild<SpeciesModel *>(); }

    // By the menu's way and by the drop's way in turn.
    void testLoading(const QJsonObject &object)
    {
        const bool isLoaded =
            ++m_loads % 2 == 0 ? m_window.loadSpeciesFile(m_path) : dropFiles(&m_window, {m_path});
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        require(isLoaded, u"it is refused"_s);
        require(m_boxes.take().isEmpty(), u"there is a box"_s);
        require(m_window.windowTitle() == u"ZORAVEL Entry Edit - entry.json"_s,
                u"the title is wrong"_s);
        m_document = document();
        require(withoutImage(m_document) == expectedSpeciesFile(object), u"a value is wrong"_s);
        require(isSamePicture(model()->getImage(), expectedImage(object[speciesKey].toObject())),
                u"the image is wrong"_s);
        testShown(object);
    }

    // The form and the point editors show what was loaded.
    void testShown(const QJsonObject &object)
    {
        int column = 0;
        for (const QLatin1StringView &name : fieldNames) {
            CleanTextEdit shown;
            shown.setCleanedHtml(model()->data(model()->index(0, column++)).toString());
            const auto *field = m_window.findChild<CleanTextEdit *>(name);
            require(field->cleanedHtml() == shown.cleanedHtml(), u"a field shows another value"_s);
        }
        const QStringList keys = expectedDatasetKeys(object);
        const QList<SpectrumWindow *> windows = spectra();
        require(windows.size() == keys.size(), u"there are more or fewer spectra"_s);
        for (qsizetype i = 0; i < std::min(windows.size(), keys.size()); ++i) {
            const auto *points = windows[i]->findChild<QPlainTextEdit *>(u"textEditSpect"_s);
            require(points->toPlainText()
                        == expectedPointLines(object[keys[i]].toObject()).join(u'\n'),
                    u"other points are shown"_s);
        }
    }

    void testRefusal()
    {
        const QString title = m_window.windowTitle();
        require(!m_window.loadSpeciesFile(m_path), u"it is loaded"_s);
        require(m_boxes.take()
                    == QStringList(u"Invalid Species File: The file "_s + m_path
                                   + u" is not a valid species file."_s),
                u"loadSpeciesFile shows another box"_s);
        require(!m_window.loadJSONSpecies(m_path), u"loadJSONSpecies loads it"_s);
        const QStringList notFound(u"Error: Species not found in JSON file. Load aborted."_s);
        require(m_boxes.take() == notFound, u"loadJSONSpecies shows another box"_s);
        require(m_window.windowTitle() == title, u"the title has changed"_s);
        require(document() == m_document, u"the open document has changed"_s);
        // A drop empties the document first. This is tried less often, as the document must be
        // filled again.
        if (++m_refusals % 10 == 0)
            testRefusedDrop(notFound);
    }

    void testRefusedDrop(const QStringList &boxes)
    {
        dropFiles(&m_window, {m_path});
        require(m_boxes.take() == boxes, u"the drop shows another box"_s);
        require(m_window.windowTitle() == u"ZORAVEL Entry Edit - (untitled)"_s,
                u"the title after the drop is wrong"_s);
        require(withoutImage(document()) == expectedSpeciesFile({}),
                u"the document is not empty after the drop"_s);
        m_document = document();
    }

    QString m_path;
    MainWindow m_window;
    ClosedBoxes m_boxes;
    QJsonObject m_document = document();
    QStringList m_wrong;
    int m_loads = 0;
    int m_refusals = 0;
};

// Counts what was tried and what survived, and keeps the variants that did not.
class Campaign
{
public:
    Campaign(const QString &folder, bool quick) : m_folder(folder), m_quick(quick), m_editor(folder)
    {
    }

    void run(const QString &operation, const QString &remark,
             const std::function<void(const VariantUser &)> &variants)
    {
        int tried = 0;
        int survived = 0;
        int seen = 0;
        variants([&](const Variant &variant) {
            // The quick part takes every 61st, which is in step with nothing else here.
            if (m_quick && ++seen % 61 != 1)
                return;
            const QString fault = m_editor.faultOf(variant);
            ++tried;
            if (fault.isEmpty())
                ++survived;
            else
                keep(operation, variant, fault);
        });
        m_isWhole = m_isWhole && tried == survived && tried > 0;
        QTextStream(stdout) << operation << '\t' << tried << '\t' << survived << '\t' << remark
                            << Qt::endl;
    }

    [[nodiscard]] bool isWhole() const { return m_isWhole; }

private:
    void keep(const QString &operation, const Variant &variant, const QString &fault)
    {
        constexpr int mostKept = 20;
        if (++m_kept > mostKept)
            return;
        const QString path = m_folder + u"/kept-%1.json"_s.arg(m_kept);
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(variant.bytes);
        QTextStream(stderr) << operation << ": " << variant.fault << ": " << fault << " (" << path
                            << ')' << Qt::endl;
    }

    QString m_folder;
    bool m_quick;
    Editor m_editor;
    int m_kept = 0;
    bool m_isWhole = true;
};

QList<QByteArray> contentsOf(const QStringList &paths)
{
    QList<QByteArray> contents;
    for (const QString &path : paths) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            contents.append(file.readAll());
    }
    return contents;
}

QStringList examples()
{
    QStringList paths;
    const QDir folder(QStringLiteral(ZORAVEL_EXAMPLES));
    for (const QString &name : folder.entryList({u"*.json"_s}, QDir::Files, QDir::Name))
        paths.append(folder.filePath(name));
    return paths;
}

} // namespace

// read_faults FOLDER [--quick]: gives the editor the examples with all kinds of faults in them.
// read_faults FOLDER FILE...: gives it these files as they are, such as the variants that were
// kept.
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    qInstallMessageHandler(noteWarning);
    QStringList arguments = QCoreApplication::arguments().sliced(1);
    const bool quick = arguments.removeAll(u"--quick"_s) > 0;
    if (arguments.isEmpty())
        return EXIT_FAILURE;
    Campaign campaign(QDir(arguments.takeFirst()).absolutePath(), quick);
    const QList<QByteArray> files = contentsOf(arguments.isEmpty() ? examples() : arguments);

    campaign.run(u"open a file as it is"_s, {}, [&](const VariantUser &use) {
        for (const QByteArray &file : files)
            use({file, u"nothing"_s, std::nullopt});
    });
    if (!arguments.isEmpty())
        return campaign.isWhole() ? EXIT_SUCCESS : EXIT_FAILURE;

    constexpr int cutStep = 97;
    campaign.run(u"open an example cut off"_s, u"at every %1th byte"_s.arg(cutStep),
                 [&](const VariantUser &use) {
                     for (const QByteArray &file : files)
                         forEachCut(file, cutStep, use);
                 });
    constexpr int flips = 10'000;
    campaign.run(u"open an example with a byte replaced"_s,
                 u"every class of bytes, seed %1"_s.arg(seed), [&](const VariantUser &use) {
                     QRandomGenerator random(seed);
                     for (const QByteArray &file : files)
                         forEachFlip(file, flips / static_cast<int>(files.size()), random, use);
                 });
    campaign.run(u"open an example with a faulty key"_s, u"removed, given twice, other types"_s,
                 [&](const VariantUser &use) {
                     for (const QByteArray &file : files)
                         forEachKeyFault(QJsonDocument::fromJson(file).object(), use);
                 });
    return campaign.isWhole() ? EXIT_SUCCESS : EXIT_FAILURE;
}
