// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/mainwindow.h"

#include <QList>
#include <QMdiArea>
#include <QPixmap>
#include <QPointF>
#include <QRect>
#include <QString>
#include <QTemporaryDir>

#include <functional>

class QMenu;
class SpectrumWindow;

// One picture of the documentation: a main window with copies of the examples, means to use it, and
// the file that the picture goes to. What it cannot find or do ends the process with a message. All
// lengths are in pixels of the window.
class Scene
{
    Q_DISABLE_COPY_MOVE(Scene)

public:
    Scene(const QString &examples, const QString &pictureFile);
    ~Scene();

    MainWindow window;

    void save(const QPixmap &picture);
    [[nodiscard]] bool isSaved() const { return m_saved; }

    // The window and its parts by object name.
    template <typename T = QWidget>
    [[nodiscard]] T *find(const char *name) const
    {
        return required(window.findChild<T *>(QLatin1String(name)), name);
    }
    // A part of the spectrum on top.
    [[nodiscard]] QWidget *inSpectrum(const char *name) const;
    void trigger(const char *action) const;

    // An example, which becomes the document.
    void open(const QString &example);
    // Puts the spectrum of this number, from 0, on top.
    void showSpectrum(int number);
    // A new spectrum with this point text.
    void newSpectrum(const QString &pointText);
    // The same with the points of an example's, each as the line that a function makes of it.
    void newSpectrumLike(const QString &example, int number,
                         const std::function<QString(double, double)> &line);
    void click(const char *buttonInSpectrum);
    // What two seconds without typing do.
    void readPoints();
    // Moves the mouse over the chart, to a point in its own units.
    void moveOverChart(const QPointF &point);

    // Parts of a picture of the window.
    [[nodiscard]] QPixmap cut(const QRect &part);
    [[nodiscard]] QPixmap cutAround(const QList<QWidget *> &widgets);
    // The top of the point editor with its buttons, beside the chart.
    [[nodiscard]] QPixmap cutPointsAndChart();
    // The tool tip that is shown.
    [[nodiscard]] QPixmap toolTip();
    // A place of the window in the last cut.
    [[nodiscard]] QPoint placeInCut(const QPoint &place) const { return place - m_cut.topLeft(); }

    // Calls a function once the next dialog or menu is shown; it must close a dialog.
    void whenDialogIsOpen(const std::function<void(QWidget *)> &then);
    void whenMenuIsOpen(const std::function<void(QMenu *)> &then);
    // Presses a button of a dialog and chooses these files of the examples in the file dialog.
    void chooseFiles(QWidget *dialog, const char *button, const QStringList &names);

private:
    [[noreturn]] static void fail(const char *what);
    template <typename T>
    static T *required(T *object, const char *name)
    {
        if (!object)
            fail(name);
        return object;
    }
    [[nodiscard]] SpectrumWindow *spectrum() const;

    QTemporaryDir m_folder;
    QString m_pictureFile;
    QRect m_cut;
    bool m_saved = false;
};

// Pictures in a row and in a column, apart from each other, on white.
[[nodiscard]] QPixmap beside(const QList<QPixmap> &pictures);
[[nodiscard]] QPixmap below(const QList<QPixmap> &pictures);
// Paints one picture over another, at this corner.
void paintOver(QPixmap &picture, const QPoint &corner, const QPixmap &over);
