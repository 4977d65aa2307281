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

// A visible, active main window and a folder for its files. It finds everything by object name.
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
    // Makes typed points reach the model, like two seconds of rest.
    static void letPointsBeRead(SpectrumWindow *spectrum);

    [[nodiscard]] bool isModified() const;

    MainWindow window;

private:
    QTemporaryDir m_folder;
};

// A species file's object with a name and spectra of these titles, two points each.
[[nodiscard]] QJsonObject speciesFileWith(const QString &name, const QStringList &titles = {});

// Whether the widget is in a spectrum that another one covers.
[[nodiscard]] bool isCovered(const QWidget *widget);

// Delivers a drag and drop of files to a widget as Qt does: to the widget, or to its nearest parent
// that accepts drops. Returns whether the drag was accepted.
bool dropFiles(QWidget *target, const QStringList &paths);
