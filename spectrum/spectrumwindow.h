// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QPointer>
#include <QWidget>

#include <memory>

class FieldBinding;
class PointMarks;
class QDataWidgetMapper;
class SpectrumModel;

namespace Ui
{
class SpectrumWindow;
}

// Edits one spectrum: a form of metadata, the point editor and the chart over one SpectrumModel.
// The main window shows it as a sub-window and must be its parent at construction: every later
// change calls the parent's slot setModified(). Another parent is not told.
class SpectrumWindow : public QWidget
{
    Q_OBJECT

public:
    // An empty spectrum, created today.
    explicit SpectrumWindow(QWidget *parent = nullptr);
    // Shows a spectrum object; missing or mistyped keys are empty.
    explicit SpectrumWindow(const QJsonObject &spectrum, QWidget *parent = nullptr);
    ~SpectrumWindow() override;

    [[nodiscard]] QJsonObject toJson() const;
    [[nodiscard]] bool isSimulation() const;

    // Commits what has been typed into the form to the model.
    void commitEdits();
    // Gives the keyboard to the title.
    void focusTitle();
    // Reads points that were typed within the last two seconds at once. An input method at work on
    // them has to finish.
    void readPendingPoints();

    void initializeMappings();
    void setupMapper(int type);
    void updateChart();

public slots:
    void onSpectrumTypeChanged(int type);
    void updateWindowTitle();
    void onButtonCommaToDotClicked();

protected:
    void closeEvent(QCloseEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    struct Mapping {
        QWidget *widget;
        int column;
        bool forSimulation;
        bool forExperiment;
        QByteArray property;
    };

    void connectSignals();
    void buildChart();
    void setTypeLabels(bool simulation);
    void onLineSpectrumToggled();
    void onPointsRead();
    void markBadLines();
    void showLineCount();
    void markModified();

    std::unique_ptr<Ui::SpectrumWindow> ui;
    SpectrumModel *model;
    PointMarks *marks; // belongs to the point editor
    QDataWidgetMapper *mapper;
    FieldBinding *binding; // belongs to the mapper
    bool updating = false;
    QList<Mapping> mappings;
    QPointer<QObject> document; // the main window, or null
};
