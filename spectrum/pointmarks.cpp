// SPDX-License-Identifier: GPL-3.0-or-later
#include "spectrum/pointmarks.h"

#include "spectrum/points.h"
#include "widgets/mistakemark.h"

#include <QEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <optional>

namespace
{

// States of the lines, which move with them when others are inserted or removed. A new line has -1.
constexpr int markedState = 1;
constexpr int goodState = 0;

bool isMistake(const QString &line)
{
    if (const std::optional<QPointF> point = parsePoint(line))
        return !isFinite(*point);
    return std::any_of(line.begin(), line.end(), [](QChar c) { return !c.isSpace(); });
}

// The text of a line as QPlainTextEdit::toPlainText(), from which points are read, returns it: a
// no-break space becomes a blank, and a line separator starts a new line. (No other line-ending
// character can stand within a line.)
QString plainTextOf(const QTextBlock &line)
{
    QString text = line.text();
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    text.replace(QChar::Nbsp, QLatin1Char(' '));
    return text;
}

bool holdsMistake(const QTextBlock &line)
{
    const QString text = plainTextOf(line);
    if (!text.contains(QLatin1Char('\n')))
        return isMistake(text);
    const QStringList lines = splitPointLines(text);
    return std::any_of(lines.begin(), lines.end(), isMistake);
}

} // namespace

PointMarks::PointMarks(QPlainTextEdit *editor) : QObject(editor), m_editor(editor)
{
    m_editor->viewport()->installEventFilter(this);
}

void PointMarks::readLines(const QList<QPointF> &points, qsizetype lineCount)
{
    // This holds for most texts and saves a second look at each line.
    const bool isFaultless =
        points.size() == lineCount && std::all_of(points.begin(), points.end(), isFinite);
    const bool wasMarked = m_count > 0;
    m_count = 0;
    m_firstLine = 0;
    if (wasMarked || !isFaultless) {
        int number = 0;
        for (QTextBlock line = m_editor->document()->begin(); line.isValid(); line = line.next()) {
            ++number;
            const bool mistake = holdsMistake(line);
            line.setUserState(mistake ? markedState : goodState);
            if (mistake && ++m_count == 1)
                m_firstLine = number;
        }
    }
    if (wasMarked || m_count > 0) {
        ++m_reading;
        m_editor->viewport()->update();
    }
}

bool PointMarks::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && m_reading > 0)
        followView();
    return QObject::eventFilter(watched, event);
}

void PointMarks::followView()
{
    const View view{m_reading, m_editor->verticalScrollBar()->value(), m_editor->blockCount(),
                    m_editor->viewport()->size(), m_editor->palette().color(QPalette::Base).rgb()};
    if (view == m_view)
        return;
    m_view = view;
    markShownLines();
}

// The editor checks all its selections for each line that it draws, so only visible lines are
// marked, and some more for lines that move up when a long one gets shorter.
void PointMarks::markShownLines()
{
    QList<QTextEdit::ExtraSelection> marks;
    const int bottom = m_editor->viewport()->height() * 3 / 2;
    const QTextCharFormat format = mistakeFormat(m_editor->palette().color(QPalette::Base));
    QTextBlock line = m_editor->cursorForPosition(QPoint(0, 0)).block();
    for (; line.isValid() && m_count > 0; line = line.next()) {
        QTextCursor cursor(line);
        if (m_editor->cursorRect(cursor).top() > bottom)
            break;
        if (line.userState() != markedState)
            continue;
        cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
        marks.append({cursor, format});
    }
    m_editor->setExtraSelections(marks);
}
