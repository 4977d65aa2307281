// SPDX-License-Identifier: GPL-3.0-or-later
// Checks what assistive technology learns about the windows.
#include "database/createdatabase.h"
#include "spectrum/spectrumwindow.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QImage>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QToolButton>

#include <functional>

namespace
{

QAccessibleInterface *accessible(QObject *object)
{
    return QAccessible::queryAccessibleInterface(object);
}

void walk(QAccessibleInterface *element, const std::function<void(QAccessibleInterface *)> &visit)
{
    QVERIFY(element && element->isValid());
    if (element->state().invisible)
        return;
    visit(element);
    for (int i = 0; i < element->childCount(); ++i)
        walk(element->child(i), visit);
}

// The name that a screen reader says: that of the label, or the element's own.
QString spokenName(const QAccessibleInterface *element)
{
    const auto labels = element->relations(QAccessible::Label);
    for (const auto &[label, relation] : labels) {
        if (relation.testFlag(QAccessible::Label) && label->role() == QAccessible::StaticText)
            return element->role() == QAccessible::ComboBox ? label->text(QAccessible::Name)
                                                            : element->text(QAccessible::Name);
    }
    return element->text(QAccessible::Name);
}

// What assistive technology expects of a widget of this program.
QAccessible::Role expectedRole(const QWidget *widget)
{
    if (widget->inherits("SpectrumChartView"))
        return QAccessible::Chart;
    if (widget->inherits("QMdiSubWindow"))
        return QAccessible::Window;
    if (qobject_cast<const QTextEdit *>(widget) || qobject_cast<const QPlainTextEdit *>(widget)
        || qobject_cast<const QLineEdit *>(widget))
        return QAccessible::EditableText;
    if (qobject_cast<const QPushButton *>(widget) || qobject_cast<const QToolButton *>(widget))
        return QAccessible::Button;
    if (qobject_cast<const QCheckBox *>(widget))
        return QAccessible::CheckBox;
    if (qobject_cast<const QComboBox *>(widget))
        return QAccessible::ComboBox;
    if (qobject_cast<const QListWidget *>(widget))
        return QAccessible::List;
    if (qobject_cast<const QTabBar *>(widget))
        return QAccessible::PageTabList;
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return label->pixmap().isNull() ? QAccessible::StaticText : QAccessible::Graphic;
    return QAccessible::NoRole;
}

// The form to which a widget belongs: its spectrum window, or its window.
const QWidget *formOf(const QWidget *widget)
{
    for (const QWidget *form = widget; form; form = form->parentWidget()) {
        if (form->isWindow() || qobject_cast<const SpectrumWindow *>(form))
            return form;
    }
    return nullptr;
}

// Checks all focusable widgets under root and returns their number.
int checkFocusable(QWidget *root)
{
    QHash<const QWidget *, QStringList> names;
    int count = 0;
    walk(accessible(root), [&](QAccessibleInterface *element) {
        auto *widget = qobject_cast<QWidget *>(element->object());
        const QAccessible::State state = element->state();
        if (!widget || !state.focusable)
            return;
        ++count;
        const QString name = spokenName(element);
        const QByteArray what = widget->metaObject()->className() + QByteArray(" ")
                                + widget->objectName().toUtf8() + " \"" + name.toUtf8() + '"';
        QVERIFY2(!name.trimmed().isEmpty(), what.constData());
        QVERIFY2(!names[formOf(widget)].contains(name), what.constData());
        names[formOf(widget)].append(name);
        QVERIFY2(expectedRole(widget) != QAccessible::NoRole, what.constData());
        QVERIFY2(element->role() == expectedRole(widget), what.constData());
    });
    // None is left out of the tree.
    int expected = 0;
    const QList<QWidget *> widgets = root->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (widget->isVisible() && widget->focusPolicy() != Qt::NoFocus && !widget->focusProxy()
            && widget->window() == root && !isCovered(widget))
            ++expected;
    }
    if (count != expected)
        QTest::qFail(qPrintable(QStringLiteral("%1 of %2").arg(count).arg(expected)), __FILE__,
                     __LINE__);
    return count;
}

QJsonObject spectrumOf(const QString &title, const QJsonArray &energies,
                       const QJsonArray &intensities)
{
    return {{QStringLiteral("Title"), title},
            {QStringLiteral("E"), energies},
            {QStringLiteral("I"), intensities}};
}

QWidget *chartOf(const SpectrumWindow *spectrum)
{
    return spectrum->findChild<QWidget *>(QStringLiteral("chartSpectrum"));
}

QString descriptionOf(QWidget *widget)
{
    return accessible(widget)->text(QAccessible::Description);
}

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void init() { failOnWarnings(); }

    void everyFocusableWidgetOfTheMainWindowHasANameAndItsRole();
    void everyFocusableWidgetOfASpectrumHasANameAndItsRole();
    void everyFocusableWidgetOfTheDatabaseDialogHasANameAndItsRole();
    void spectraOfTheSameTitleAreToldApart();
    void tabsOfTheSpectraAreInTheTree();
    void typeIsLabelled();
    void chartDescribesItsSpectrum_data();
    void chartDescribesItsSpectrum();
    void chartDescribesWhatIsDrawn();
    void imageIsDescribed();
};

void TestAccessibility::everyFocusableWidgetOfTheMainWindowHasANameAndItsRole()
{
    MainWindowFixture f;
    // Twelve in the form, the image, three tool buttons.
    QCOMPARE(checkFocusable(&f.window), 16);
}

void TestAccessibility::everyFocusableWidgetOfASpectrumHasANameAndItsRole()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("A"), {1, 2}, {3, 4}));
    f.window.createNewSpectrumWindow(spectrumOf(QString(), {}, {}));
    for (SpectrumWindow *spectrum : f.spectra()) {
        spectrum->onSpectrumTypeChanged(4);
        // The tabs, the sub-window, and seventeen in its form.
        QCOMPARE(checkFocusable(&f.window), 16 + 1 + 1 + 17);
    }
}

void TestAccessibility::everyFocusableWidgetOfTheDatabaseDialogHasANameAndItsRole()
{
    CreateDatabase dialog;
    dialog.show();
    QCOMPARE(checkFocusable(&dialog), 10);
}

void TestAccessibility::spectraOfTheSameTitleAreToldApart()
{
    MainWindowFixture f;
    for (const char *title : {"Same", "Same", ""})
        f.window.createNewSpectrumWindow(spectrumOf(QString::fromLatin1(title), {}, {}));
    QStringList names;
    for (QMdiSubWindow *subWindow : f.area()->subWindowList())
        names.append(accessible(subWindow)->text(QAccessible::Name));
    QCOMPARE(names,
             QStringList({QStringLiteral("Spectrum 1: Same"), QStringLiteral("Spectrum 2: Same"),
                          QStringLiteral("Spectrum 3")}));
}

void TestAccessibility::tabsOfTheSpectraAreInTheTree()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("First"), {}, {}));
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("Second"), {}, {}));
    QStringList tabs;
    walk(accessible(&f.window), [&](QAccessibleInterface *element) {
        if (element->role() == QAccessible::PageTab)
            tabs.append(element->text(QAccessible::Name));
    });
    QCOMPARE(tabs, QStringList({QStringLiteral("First"), QStringLiteral("Second")}));
}

// A combo box's own name is its text; its label says what it is for.
void TestAccessibility::typeIsLabelled()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow();
    QCOMPARE(spokenName(accessible(f.find<QComboBox>(QStringLiteral("comboBoxType")))),
             QStringLiteral("Type"));
}

void TestAccessibility::chartDescribesItsSpectrum_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("points");
    QTest::addColumn<QString>("description");
    QTest::newRow("curve") << "Water"
                           << "12.5 1\n12.6 30.25\n12.75 -2"
                           << "Water: 3 points from 12.5000 eV to 12.7500 eV, highest at 12.6000 "
                              "eV, intensity 30.25";
    QTest::newRow("unsorted") << "Water"
                              << "2 1\n1 5\n3 4"
                              << "Water: 3 points from 1.0000 eV to 3.0000 eV, highest at 1.0000 "
                                 "eV, intensity 5.00";
    QTest::newRow("negative") << "Dip"
                              << "2 -1\n1 -5"
                              << "Dip: 2 points from 1.0000 eV to 2.0000 eV, highest at 2.0000 "
                                 "eV, intensity -1.00";
    QTest::newRow("first of equals") << "A"
                                     << "1 5\n2 5"
                                     << "A: 2 points from 1.0000 eV to 2.0000 eV, highest at "
                                        "1.0000 eV, intensity 5.00";
    QTest::newRow("one") << "A"
                         << "8.25 7"
                         << "A: one point at 8.2500 eV, intensity 7.00";
    QTest::newRow("none") << "A"
                          << "no point"
                          << "A: no points";
    QTest::newRow("no title") << ""
                              << "8.25 7"
                              << "Spectrum without a title: one point at 8.2500 eV, intensity 7.00";
    QTest::newRow("percent signs") << "%1 of %2"
                                   << "8.25 7"
                                   << "%1 of %2: one point at 8.2500 eV, intensity 7.00";
    QTest::newRow("not finite") << "A"
                                << "1 2\ninf 3\n2 nan\n4 1"
                                << "A: 4 points from 1.0000 eV to 4.0000 eV, highest at 1.0000 eV, "
                                   "intensity 2.00";
    QTest::newRow("nothing finite") << "A"
                                    << "inf 3\n2 nan"
                                    << "A: 2 points, none of them finite";
}

void TestAccessibility::chartDescribesItsSpectrum()
{
    QFETCH(QString, title);
    QFETCH(QString, points);
    QFETCH(QString, description);
    MainWindowFixture f;
    f.window.createNewSpectrumWindow();
    SpectrumWindow *spectrum = f.spectra().constFirst();
    QCOMPARE(descriptionOf(chartOf(spectrum)),
             QStringLiteral("Spectrum without a title: no points"));
    MainWindowFixture::field(spectrum, QStringLiteral("lineEditTitle"))->setPlainText(title);
    MainWindowFixture::points(spectrum)->setPlainText(points);
    MainWindowFixture::letPointsBeRead(spectrum);
    QCOMPARE(descriptionOf(chartOf(spectrum)), description);
}

void TestAccessibility::chartDescribesWhatIsDrawn()
{
    MainWindowFixture f;
    f.window.createNewSpectrumWindow(spectrumOf(QStringLiteral("A"), {1, 2}, {3, 4}));
    SpectrumWindow *spectrum = f.spectra().constFirst();
    QWidget *chart = chartOf(spectrum);
    const QString first = QStringLiteral("A: 2 points from 1.0000 eV to 2.0000 eV, highest at "
                                         "2.0000 eV, intensity 4.00");
    QCOMPARE(descriptionOf(chart), first);
    MainWindowFixture::points(spectrum)->setPlainText(QStringLiteral("1 2"));
    QCOMPARE(descriptionOf(chart), first); // the points have not been read yet
    MainWindowFixture::letPointsBeRead(spectrum);
    QCOMPARE(descriptionOf(chart), QStringLiteral("A: one point at 1.0000 eV, intensity 2.00"));
    spectrum->findChild<QPushButton *>(QStringLiteral("buttonNormalize"))->click();
    QCOMPARE(descriptionOf(chart), QStringLiteral("A: one point at 1.0000 eV, intensity 1000.00"));
}

void TestAccessibility::imageIsDescribed()
{
    MainWindowFixture f;
    auto *label = f.find<QLabel>(QStringLiteral("imageLabel"));
    QCOMPARE(accessible(label)->text(QAccessible::Name), QStringLiteral("Structure image"));
    QCOMPARE(descriptionOf(label), QStringLiteral("No image"));
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    QGuiApplication::clipboard()->setImage(image);
    f.window.pasteImageFromClipboard();
    QCOMPARE(descriptionOf(label), QStringLiteral("30 by 20 pixels"));
    QCOMPARE(accessible(label)->role(), QAccessible::Graphic);
    f.window.clearImage();
    QCOMPARE(descriptionOf(label), QStringLiteral("No image"));
}

QTEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
