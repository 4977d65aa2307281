// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictures/picture.h"
#include "species/speciesfile.h"
#include "spectrum/spectrumwindow.h"
#include "support/dialogs.h"
#include "support/files.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QTabBar>
#include <QTcpServer>
#include <QTest>
#include <QTextEdit>

#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

// Says whether a file has been opened meanwhile.
class OpenedFiles
{
    Q_DISABLE_COPY_MOVE(OpenedFiles)

public:
    explicit OpenedFiles(const QString &path) : m_queue(inotify_init1(IN_NONBLOCK))
    {
        if (inotify_add_watch(m_queue, QFile::encodeName(path).constData(), IN_OPEN | IN_ACCESS)
            < 0)
            QTest::qFail("the file cannot be watched", __FILE__, __LINE__);
    }
    ~OpenedFiles() { ::close(m_queue); }

    bool any() const
    {
        alignas(inotify_event) char events[4096];
        return ::read(m_queue, events, sizeof events) > 0;
    }

private:
    int m_queue;
};

// A picture on the disk and a service on the network, and markup that refers to both.
class Bait
{
public:
    Bait() : m_picture(m_folder.filePath(u"red.png"_s)), m_sheet(m_folder.filePath(u"red.css"_s))
    {
        QImage red(50, 50, QImage::Format_RGB32);
        red.fill(Qt::red);
        if (!red.save(m_picture) || !m_server.listen(QHostAddress::LocalHost))
            QTest::qFail("there is no bait", __FILE__, __LINE__);
        writeFile(m_sheet, QByteArray("p { color: red }"));
    }

    QString picture() const { return m_picture; }
    QString sheet() const { return m_sheet; }
    quint16 port() const { return m_server.serverPort(); }

    QString markup() const
    {
        const QString web = u"http://127.0.0.1:%1"_s.arg(m_server.serverPort());
        QString result;
        for (const QString &at :
             QStringList{m_picture, u"file://"_s + m_picture, u"file:"_s + m_picture,
                         web + u"/red.png"_s, u"//127.0.0.1/red.png"_s})
            result += u"<img src='%1'><object data='%1' type='image/png'>o</object>"
                      "<p style='background-image:url(%1)'>p</p>"
                      "<table background='%1'><tr><td background='%1'>t</td></tr></table>"
                      "<ul style='list-style-image:url(%1)'><li>l</li></ul><video src='%1'></video>"
                      "<iframe src='%1'></iframe><embed src='%1'>"_s.arg(at);
        for (const QString &at : QStringList{m_sheet, u"file://"_s + m_sheet, web + u"/red.css"_s})
            result += u"<link rel='stylesheet' type='text/css' href='%1'>"
                      "<style>@import url(%1); p { background: url(%1) }</style>"_s.arg(at);
        return result;
    }

    bool wasVisited()
    {
        return m_server.hasPendingConnections() || m_server.waitForNewConnection(200);
    }

private:
    QTemporaryDir m_folder;
    QString m_picture;
    QString m_sheet;
    QTcpServer m_server;
};

void paint(QWidget *widget)
{
    QCoreApplication::processEvents();
    (void)widget->grab();
}

} // namespace

// Entries come from strangers: their contents and names are text and nothing else.
class TestHostileFiles : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void anOrdinaryEditorTakesTheBait()
    {
        Bait bait;
        const OpenedFiles opened(bait.picture());
        QTextEdit edit;
        edit.show();
        edit.setHtml(bait.markup());
        paint(&edit);
        QVERIFY(opened.any());
    }

    void nothingThatAnEntryRefersToIsFetched()
    {
        Bait bait;
        MainWindowFixture fixture;
        const QString file = fixture.path(u"a.json"_s);
        writeFile(file, hostileEntry(bait.markup()));
        const OpenedFiles pictures(bait.picture());
        const OpenedFiles sheets(bait.sheet());
        QVERIFY(fixture.window.loadSpeciesFile(file));
        for (QMdiSubWindow *subWindow : fixture.area()->subWindowList()) {
            fixture.area()->setActiveSubWindow(subWindow);
            paint(&fixture.window);
        }
        fixture.field(u"lineEditSpecies"_s)->selectAll();
        fixture.field(u"lineEditSpecies"_s)->copy();
        Dialogs dialogs;
        dialogs.choose(fixture.path(u"b.json"_s));
        fixture.window.saveSpeciesAs();
        QVERIFY(!pictures.any());
        QVERIFY(!sheets.any());
        QVERIFY(!bait.wasVisited());
    }

    // Qt's own decoder would open the file.
    void nothingThatADrawingRefersToIsFetched()
    {
        Bait bait;
        QByteArray drawing =
            "<?xml version='1.0'?><?xml-stylesheet type='text/css' href='" + bait.sheet().toUtf8()
            + "'?><!DOCTYPE svg [<!ENTITY e SYSTEM '" + bait.sheet().toUtf8()
            + "'>]><svg xmlns='http://www.w3.org/2000/svg' width='60' height='60' "
              "xmlns:xlink='http://www.w3.org/1999/xlink'><rect width='9' height='9'/>";
        const QString web = u"http://127.0.0.1:%1/red.png"_s.arg(bait.port());
        for (const QString &at : QStringList{bait.picture(), u"file://"_s + bait.picture(), web})
            drawing +=
                u"<image width='50' height='50' xlink:href='%1'/>"
                "<image width='50' height='50' href='%1'/><use xlink:href='%1#a'/>"
                "<style>@import url(%1); @font-face { font-family: a; src: url(%1) }</style>"
                "<font-face><font-face-src><font-face-uri xlink:href='%1'/>"
                "</font-face-src></font-face><text fill='url(%1#a)'>t</text>"
                "<script xlink:href='%1'/><script>document.location = '%1'</script>"_s.arg(at)
                    .toUtf8();
        drawing += "</svg>";
        const OpenedFiles pictures(bait.picture());
        const OpenedFiles sheets(bait.sheet());
        // What Qt says of what it does not find is no concern here.
        const auto before =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        const QImage image = decodePicture(drawing);
        const bool wasFetched = pictures.any() || sheets.any() || bait.wasVisited();
        const bool isBait = !QImage::fromData(drawing).isNull() && pictures.any();
        qInstallMessageHandler(before);
        QCOMPARE(image.size(), QSize(60, 60));
        QVERIFY(!wasFetched);
        QVERIFY(isBait);
    }

    void nothingThatPastedOrDroppedMarkupRefersToIsFetched()
    {
        Bait bait;
        MainWindowFixture fixture;
        const OpenedFiles pictures(bait.picture());
        const OpenedFiles sheets(bait.sheet());
        for (const char *name : {"lineEditSpecies", "textEditAliases"}) {
            CleanTextEdit *edit = fixture.field(QString::fromLatin1(name));
            auto *data = new QMimeData;
            data->setHtml(bait.markup());
            data->setText(u"text"_s);
            QGuiApplication::clipboard()->setMimeData(data);
            edit->setFocus();
            edit->paste();
            QMimeData dragged;
            dragged.setHtml(bait.markup());
            dragged.setText(u"text"_s);
            edit->setAcceptDrops(true);
            QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &dragged, Qt::LeftButton,
                            Qt::NoModifier);
            QCoreApplication::sendEvent(edit->viewport(), &drop);
            paint(&fixture.window);
            QVERIFY2(edit->toPlainText().startsWith(u"text"_s), qPrintable(edit->toPlainText()));
        }
        QVERIFY(!pictures.any());
        QVERIFY(!sheets.any());
        QVERIFY(!bait.wasVisited());
    }

    void everyBoxThatNamesAFileIsPlainText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("picture") << u"<img src=x>.json"_s;
        QTest::newRow("bold") << u"<b>x<\u2215b>.json"_s;
        QTest::newRow("folder") << u"<b>x</b>.json"_s;
        QTest::newRow("link") << u"<a href='file:x'>x.json"_s;
        QTest::newRow("entity") << u"&lt;x&gt;.json"_s;
    }
    void everyBoxThatNamesAFileIsPlainText()
    {
        QFETCH(QString, name);
        MainWindowFixture fixture;
        const QString file = fixture.path(name);
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        Dialogs dialogs;
        dialogs.press();
        QVERIFY(!fixture.window.loadSpeciesFile(file));
        writeFile(file, QByteArray("{}"));
        dialogs.press();
        QVERIFY(!fixture.window.loadSpeciesFile(file));
        const QString database = fixture.path(u"db.json"_s);
        const auto compile = [&](const QString &path) {
            return fixture.window.compileSpeciesFiles({path}, database, {}, {}, {}, true);
        };
        dialogs.press();
        QVERIFY(!compile(file));
        QVERIFY(QFile::remove(file));
        dialogs.press();
        QVERIFY(!compile(file));
        QCOMPARE(dialogs.boxes.size(), 4);
        for (const SeenBox &box : std::as_const(dialogs.boxes)) {
            QCOMPARE(box.format, Qt::PlainText);
            QVERIFY2(box.text.contains(file), qPrintable(box.text));
        }
    }

    void everyOtherBoxIsPlainTextToo()
    {
        MainWindowFixture fixture;
        Dialogs dialogs;
        const QString broken = fixture.path(u"<i>.json"_s);
        writeFile(broken, QByteArray("{"));
        dialogs.choose(broken).press();
        QVERIFY(!fixture.window.loadJSONSpectrum());
        dialogs.press();
        QVERIFY(dropFiles(&fixture.window, {broken}));
        dialogs.press();
        QVERIFY(!fixture.window.navigateSpeciesFiles(fixture.folder(), 0));
        dialogs.press();
        fixture.window.copySpectrumToClipboard();
        dialogs.press();
        fixture.window.saveSpectrumToFile();
        QGuiApplication::clipboard()->setText(u"<i>"_s);
        dialogs.press();
        fixture.window.pasteSpectrumFromClipboard();
        dialogs.press();
        fixture.window.pasteImageFromClipboard();
        QCOMPARE(dialogs.boxes.size(), 7);
        for (const SeenBox &box : std::as_const(dialogs.boxes))
            QCOMPARE(box.format, Qt::PlainText);
    }

    void titlesTabsLabelsAndTipsShowMarkupAsText()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(u"<img src=x> MARK.json"_s);
        writeFile(file, hostileEntry(u"&lt;img src='x'&gt; &lt;b&gt;MARK"_s));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        const QString shown = u"<img src='x'> <b>MARK"_s;
        QCOMPARE(fixture.window.windowTitle(), u"ZORAVEL Entry Edit - <img src=x> MARK.json"_s);
        QCOMPARE(fixture.spectra().value(0)->windowTitle(), shown);
        // Tabs draw texts as they are; tool tips read them as markup.
        const auto *tabs = fixture.area()->findChild<QTabBar *>();
        QCOMPARE(tabs->tabText(0), shown);
        QCOMPARE(tabs->tabToolTip(0), u"<qt>&lt;img src='x'&gt; &lt;b&gt;MARK</qt>"_s);

        int labels = 0;
        for (const auto *widget : fixture.window.findChildren<QWidget *>()) {
            for (const QString &tip : {widget->toolTip(), widget->statusTip(), widget->whatsThis()})
                QVERIFY2(!tip.contains(u"MARK"_s), widget->metaObject()->className());
            const auto *label = qobject_cast<const QLabel *>(widget);
            if (!label || !label->text().contains(u"MARK"_s))
                continue;
            ++labels;
            QCOMPARE(label->textFormat(), Qt::PlainText);
        }
        QCOMPARE(labels, int(fixture.spectra().size())); // the dates
    }

    void theDatabaseDialogShowsNamesAsText()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(u"<img src=x>.json"_s);
        writeFile(file, speciesFileWith(u"x"_s));
        Dialogs dialogs;
        dialogs.handle([&](QWidget *dialog) {
            const auto press = [dialog](const QString &name) {
                dialog->findChild<QAbstractButton *>(name)->click();
            };
            dialogs.choose(fixture.path(u"<b>db.json"_s)).choose(file);
            press(u"pushButton"_s);
            press(u"pushButton_2"_s);
            const auto *label = dialog->findChild<QLabel *>(u"label_5"_s);
            QCOMPARE(label->text(), u"<b>db.json"_s);
            QCOMPARE(label->textFormat(), Qt::PlainText);
            const auto *list = dialog->findChild<QListWidget *>();
            QCOMPARE(list->item(0)->text(), u"<img src=x>.json"_s);
            QCOMPARE(list->item(0)->toolTip(), QString());
            dialog->close();
        });
        fixture.trigger(u"actionCreateDatabase"_s);
    }

    // A path in an entry is plain text: only the saved file is opened, run or written.
    void loadingAndSavingTouchesNoOtherFile()
    {
        MainWindowFixture fixture;
        const QString secret = fixture.path(u"secret.txt"_s);
        writeFile(secret, QByteArray("secret"));
        const QString file = fixture.path(u"a.json"_s);
        QJsonObject entry = hostileEntry(secret);
        for (const char *key : {"$ref", "include", "Script", "Dataset1/../../x", "__proto__"})
            entry[QLatin1String(key)] = secret;
        QJsonObject species = entry[speciesKey].toObject();
        species[u"StructuralFormula"_s] = QString(u"file://"_s + secret);
        entry[speciesKey] = species;
        writeFile(file, entry);
        const QStringList before =
            QDir(fixture.folder()).entryList(QDir::AllEntries | QDir::Hidden);
        const OpenedFiles opened(secret);
        QVERIFY(fixture.window.loadSpeciesFile(file));
        paint(&fixture.window);
        fixture.window.saveSpecies();
        QVERIFY(!opened.any());
        QCOMPARE(QDir(fixture.folder()).entryList(QDir::AllEntries | QDir::Hidden), before);
    }

    void textsTooLongToBeShownAreSavedAsTheyAre()
    {
        MainWindowFixture fixture;
        const QString file = fixture.path(u"a.json"_s);
        const QString text = u"H<sub>2</sub>  O&amp;&#8239;\ufffc\u2028\t<br>"_s.repeated(8'000);
        writeFile(file, hostileEntry(text));
        QVERIFY(fixture.window.loadSpeciesFile(file));
        paint(&fixture.window);
        CleanTextEdit *name = fixture.field(u"lineEditSpecies"_s);
        QVERIFY(name->toPlainText().startsWith(u"H<sub>2</sub>  O"_s));
        name->setFocus();
        fixture.window.saveSpecies();
        QCOMPARE(textsOf(fileObject(file)), QStringList(hostileTexts, text));

        QTest::keyClick(name, Qt::Key_X);
        fixture.window.saveSpecies();
        QStringList texts = textsOf(fileObject(file));
        QCOMPARE(texts.removeAll(QString(u'x' + text)), 1);
        QCOMPARE(texts, QStringList(hostileTexts - 1, text));
    }

private:
    static constexpr int hostileTexts = 10 + 11 + 11; // of the entry below that the file keeps

    // The long texts in an entry and its spectra.
    static QStringList textsOf(const QJsonObject &entry)
    {
        QStringList texts;
        for (const auto &part : entry) {
            const QJsonObject members = part.toObject();
            for (const auto &value : members) {
                if (value.toString().size() > 1'000)
                    texts.append(value.toString());
            }
        }
        return texts;
    }

    // An entry of two spectra, one of each kind, with this text in every field.
    static QJsonObject hostileEntry(const QString &text)
    {
        QJsonObject species;
        for (const char *key : {"Name", "Aliases", "Formula", "InChI", "CAS", "PubChem", "AIE",
                                "VIE", "AIE_Comment", "VIE_Comment"})
            species[QLatin1String(key)] = text;
        QList<QJsonObject> spectra;
        for (const int type : {0, 4}) {
            QJsonObject spectrum{{u"SpectType"_s, type}};
            for (const char *key :
                 {"Title", "Uploader", "DOI", "FurtherRefs", "T", "FurtherComments", "CreatedDate",
                  "FacilityDate", "Source", "Resolution", "Normalization", "LevelOfTheory",
                  "ConvolutionFWHM", "AIE"})
                spectrum[QLatin1String(key)] = text;
            spectra.append(spectrum);
        }
        return speciesFileObject(species, spectra);
    }
};

QTEST_MAIN(TestHostileFiles)
#include "tst_hostilefiles.moc"
