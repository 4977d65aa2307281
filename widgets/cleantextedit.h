// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTextEdit>

// A multi-line rich-text editor whose content is restricted markup: plain characters and the tags
// sub, sup and br. Data mappers bind its property "cleanedHtml". Text is not escaped, neither
// written nor read: a typed "<" is markup when the string is set again. Markup never loads anything
// from the disk or the network. If its layout would take too long, the text is shown as written and
// only its beginning, as the tool tip says; the hidden rest stays part of the content.
class CleanTextEdit : public QTextEdit
{
    Q_OBJECT
    Q_PROPERTY(QString cleanedHtml READ cleanedHtml WRITE setCleanedHtml NOTIFY cleanedHtmlChanged)

public:
    explicit CleanTextEdit(QWidget *parent = nullptr);

    // The content as restricted markup; blocks and soft line breaks alike are written "<br>".
    [[nodiscard]] QString cleanedHtml() const;
    // Replaces the content and starts a fresh undo history. Qt parses html as far as it can; too
    // deeply nested markup is reduced to text and line breaks.
    void setCleanedHtml(const QString &html);

    // The restricted markup of any document: each fragment has its own pair of tags for its
    // alignment, neighbours are not merged, and other formatting is dropped.
    [[nodiscard]] QString extractAllowedHtmlFromDocument(QTextDocument *document) const;

    // Two lines, so that a form of many fields fits on a small laptop's screen.
    [[nodiscard]] QSize minimumSizeHint() const override;
    // Equals the minimum: where labels wrap, a layout shrinks nothing below its size hint.
    [[nodiscard]] QSize sizeHint() const override;

    // Loads nothing: what a stranger's entry refers to is not fetched.
    QVariant loadResource(int type, const QUrl &name) override;

signals:
    void cleanedHtmlChanged();

protected:
    // Copies the selection whole: as markup, if some of it is hidden.
    [[nodiscard]] QMimeData *createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData *source) override;
    // Inserts text as written if its layout would take too long, in the format at the cursor.
    // False, and nothing is inserted, for any other text.
    [[nodiscard]] bool insertedPlainly(const QString &text);

private slots:
    void onTextChanged();

private:
    void setPlainly(const QString &text);
    void wrapAnywhere(bool anywhere);

    QString m_longText; // the last text that was set, if it is long and nothing was changed since
};
