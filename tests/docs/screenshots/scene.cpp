// SPDX-License-Identifier: GPL-3.0-or-later
#include "screenshots/scene.h"

#include "spectrum/spectrummodel.h"
#include "spectrum/spectrumwindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QChart>
#include <QChartView>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <numeric>

namespace
{

constexpr int gap = 12;
constexpr int margin = 3; // around the widgets of a cut

// Lets everything that was changed be laid out and painted.
void settle()
{
    QTest::qWait(50);
}

QPixmap joined(const QList<QPixmap> &pictures, Qt::Orientation orientation)
{
    const bool inRow = orientation == Qt::Horizontal;
    QSize size;
    for (const QPixmap &picture : pictures) {
        if (inRow)
            size = {size.width() + picture.width() + gap,
                    std::max(size.height(), picture.height())};
        else
            size = {std::max(size.width(), picture.width()),
                    size.height() + picture.height() + gap};
    }
    QPixmap all(size - (inRow ? QSize(gap, 0) : QSize(0, gap)));
    all.fill(Qt::white);
    QPainter painter(&all);
    QPoint corner;
    for (const QPixmap &picture : pictures) {
        painter.drawPixmap(corner, picture);
        corner += inRow ? QPoint(picture.width() + gap, 0) : QPoint(0, picture.height() + gap);
    }
    return all;
}

// Calls a function as soon as another one finds something.
template <typename T>
void whenThereIs(QObject *context, T *(*find)(), const std::function<void(T *)> &then)
{
    QTimer::singleShot(5, context, [=] {
        T *found = find();
        if (!found || !found->isVisible()) {
            whenThereIs(context, find, then);
            return;
        }
        settle();
        then(found);
    });
}

} // namespace

Scene::Scene(const QString &examples, const QString &pictureFile) : m_pictureFile(pictureFile)
{
    for (const QFileInfo &file : QDir(examples).entryInfoList({QStringLiteral("*.json")}))
        QFile::copy(file.filePath(), m_folder.filePath(file.fileName()));
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        fail("the window does not become active");
}

Scene::~Scene()
{
    window.hide();
}

void Scene::fail(const char *what)
{
    std::fprintf(stderr, "screenshots: %s\n", what);
    std::exit(1);
}

void Scene::save(const QPixmap &picture)
{
    m_saved = picture.save(m_pictureFile);
}

QWidget *Scene::inSpectrum(const char *name) const
{
    return required(spectrum()->findChild<QWidget *>(QLatin1String(name)), name);
}

void Scene::trigger(const char *action) const
{
    find<QAction>(action)->trigger();
    settle();
}

void Scene::open(const QString &example)
{
    if (!window.loadSpeciesFile(m_folder.filePath(example)))
        fail(qPrintable(example));
    settle();
}

SpectrumWindow *Scene::spectrum() const
{
    const QMdiSubWindow *subWindow = find<QMdiArea>("mdiArea")->currentSubWindow();
    return required(subWindow ? qobject_cast<SpectrumWindow *>(subWindow->widget()) : nullptr,
                    "there is no spectrum");
}

void Scene::showSpectrum(int number)
{
    auto *area = find<QMdiArea>("mdiArea");
    area->setActiveSubWindow(area->subWindowList().at(number));
    settle();
}

void Scene::newSpectrum(const QString &pointText)
{
    trigger("actionNew");
    // The day on which the picture is taken shall not show.
    auto *model = required(spectrum()->findChild<SpectrumModel *>(), "there is no record");
    model->setValue(SpectrumColumn::CreatedDate, QStringLiteral("2026-11-21"));
    auto *editor = static_cast<QPlainTextEdit *>(inSpectrum("textEditSpect"));
    editor->insertPlainText(pointText);
    editor->moveCursor(QTextCursor::Start);
    settle();
}

void Scene::newSpectrumLike(const QString &example, int number,
                            const std::function<QString(double, double)> &line)
{
    open(example);
    showSpectrum(number);
    const QJsonObject points = spectrum()->toJson();
    const QJsonArray energies = points.value(QLatin1String("E")).toArray();
    const QJsonArray intensities = points.value(QLatin1String("I")).toArray();
    QStringList lines;
    for (qsizetype i = 0; i < energies.size(); ++i)
        lines.append(line(energies[i].toDouble(), intensities[i].toDouble()));
    newSpectrum(lines.join(QLatin1Char('\n')));
}

void Scene::click(const char *buttonInSpectrum)
{
    static_cast<QAbstractButton *>(inSpectrum(buttonInSpectrum))->click();
    settle();
}

void Scene::readPoints()
{
    spectrum()->readPendingPoints();
    settle();
}

void Scene::moveOverChart(const QPointF &point)
{
    auto *view = static_cast<QChartView *>(inSpectrum("chartSpectrum"));
    const QPointF inScene = view->chart()->mapToScene(view->chart()->mapToPosition(point));
    QTest::mouseMove(view->viewport(), view->mapFromScene(inScene));
    settle();
}

QPixmap Scene::cut(const QRect &part)
{
    settle();
    m_cut = part & window.rect();
    return window.grab(m_cut);
}

QPixmap Scene::cutAround(const QList<QWidget *> &widgets)
{
    QRect all;
    for (const QWidget *widget : widgets)
        all |= QRect(widget->mapTo(&window, QPoint()), widget->size());
    return cut(all.marginsAdded({margin, margin, margin, margin}));
}

QPixmap Scene::cutPointsAndChart()
{
    const QWidget *label = inSpectrum("label_14");
    const QWidget *editor = inSpectrum("textEditSpect");
    const QPixmap chart = cutAround({inSpectrum("chartSpectrum")});
    const QPoint corner(editor->mapTo(&window, QPoint()).x(), label->mapTo(&window, QPoint()).y());
    const QPoint around(margin, margin);
    const QPixmap points =
        cut(QRect(corner - around, QSize(editor->width() + 2 * margin, chart.height())));
    return beside({points, chart});
}

QPixmap Scene::toolTip()
{
    settle();
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto tip = std::find_if(windows.begin(), windows.end(), [](const QWidget *widget) {
        return widget->isVisible() && widget->windowType() == Qt::ToolTip;
    });
    if (tip == windows.end())
        fail("there is no tool tip");
    return (*tip)->grab();
}

void Scene::whenDialogIsOpen(const std::function<void(QWidget *)> &then)
{
    whenThereIs<QWidget>(&window, &QApplication::activeModalWidget, then);
}

void Scene::whenMenuIsOpen(const std::function<void(QMenu *)> &then)
{
    whenThereIs<QWidget>(&window, &QApplication::activePopupWidget, [then](QWidget *popup) {
        then(static_cast<QMenu *>(popup));
        popup->close();
    });
}

void Scene::chooseFiles(QWidget *dialog, const char *button, const QStringList &names)
{
    auto *pressed = required(dialog->findChild<QAbstractButton *>(QLatin1String(button)), button);
    QStringList quoted;
    for (const QString &name : names)
        quoted.append(QLatin1Char('"') + m_folder.filePath(name) + QLatin1Char('"'));
    const QString text =
        names.size() == 1 ? m_folder.filePath(names.first()) : quoted.join(QLatin1Char(' '));
    QTimer::singleShot(200, &window, [text] {
        auto *chooser = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        required(chooser, "there is no file dialog")
            ->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
            ->setText(text);
        static_cast<QDialog *>(chooser)->accept();
    });
    pressed->click();
    settle();
}

QPixmap beside(const QList<QPixmap> &pictures)
{
    return joined(pictures, Qt::Horizontal);
}

QPixmap below(const QList<QPixmap> &pictures)
{
    return joined(pictures, Qt::Vertical);
}

void paintOver(QPixmap &picture, const QPoint &corner, const QPixmap &over)
{
    QPainter(&picture).drawPixmap(corner, over);
}
