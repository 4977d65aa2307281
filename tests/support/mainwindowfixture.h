// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/mainwindow.h"

#include <QAction>
#include <QDir>
#include <QJsonObject>
#include <QTemporaryDir>

class CleanTextEdit;
class QMdiArea;
class QMdiSubWindow;
class QPlainTextEdit;
class SpectrumWindow;

// A main window that is shown and active, and a folder for its files. Reaches everything by object
// name, as a user reaches it by sight.
class MainWindowFixture
{
public:
    MainWindowFixture();
    ~MainWindowFixture();

    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString folder() const { return QDir(m_folder.path()).absolutePath(); }

    template <typename T>
    [[nodiscard]] T *find(const QString &name) const
    {
        T *object = window.findChild<T *>(name);
        Q_ASSERT_X(object, "find", qPrintable(name));
        return object;
    }
    [[nodiscard]] CleanTextEdit *field(const QString &name) const;

    // Triggers an action that must be enabled.
    void trigger(const QString &name) const;

    [[nodiscard]] QMdiArea *area() const;
    [[nodiscard]] QList<SpectrumWindow *> spectra() const;
    [[nodiscard]] static CleanTextEdit *field(const SpectrumWindow *spectrum, const QString &name);
    [[nodiscard]] static QPlainTextEdit *points(const SpectrumWindow *spectrum);
    // Types text at the start of the point editor, line feeds included.
    static void typePoints(const SpectrumWindow *spectrum, const QString &text);
    // Makes the points that were typed reach the model, as two seconds of rest do.
    static void letPointsBeRead(SpectrumWindow *spectrum);

    [[nodiscard]] bool isModified() const;

    MainWindow window;

private:
    QTemporaryDir m_folder;
};

// A species file's object with a name and spectra of these titles, two points each.
[[nodiscard]] QJsonObject speciesFileWith(const QString &name, const QStringList &titles = {});

// Whether it is in a spectrum that another one covers.
[[nodiscard]] bool isCovered(const QWidget *widget);

// Lets a widget see files being dragged over it and dropped, as Qt delivers it: to the
// widget, or to the nearest one around it that takes drops. Returns whether the drag was accepted.
bool dropFiles(QWidget *target, const QStringList &paths);
