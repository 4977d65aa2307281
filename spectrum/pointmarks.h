// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QPointF>
#include <QRgb>
#include <QSize>

class QPlainTextEdit;

// Underlines the lines of a point editor that are not points of two finite numbers: files leave
// other lines out, and numbers that are not finite come back as 0. Blank lines are no mistakes. An
// edited line keeps its mark until the lines are read again. Text, undo history and modified state
// do not change, and a key press costs the same however many marks there are.
class PointMarks : public QObject
{
    Q_OBJECT

public:
    // Belongs to the editor.
    explicit PointMarks(QPlainTextEdit *editor);

    // Checks every line of the editor. points were just read from its text, which has lineCount
    // lines that are not empty.
    void readLines(const QList<QPointF> &points, qsizetype lineCount);

    // The values of the last reading.
    [[nodiscard]] int count() const { return m_count; }
    // The number of the first marked line, from 1 on; 0 if there is none.
    [[nodiscard]] int firstLine() const { return m_firstLine; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followView();
    void markShownLines();

    QPlainTextEdit *m_editor;
    int m_count = 0;
    int m_firstLine = 0;
    // What the marks that are drawn depend on.
    struct View {
        int reading = 0;
        int scrolled = 0;
        int lines = 0;
        QSize size;
        QRgb background = 0;

        bool operator==(const View &) const = default;
    };
    View m_view;
    int m_reading = 0;
};
