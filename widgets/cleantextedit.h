// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTextEdit>

// A multi-line rich-text editor whose content is restricted markup: plain characters and the tags
// sub, sup and br, nothing else. Data mappers bind its property "cleanedHtml". Text is not escaped,
// neither written nor read: a typed "<" is markup when the string is set again. Markup never makes
// it load anything from the disk or the network. A text whose layout would take too long is shown
// as it is written, its beginning only, which the tool tip says; what is not shown stays in it.
class CleanTextEdit : public QTextEdit
{
    Q_OBJECT
    Q_PROPERTY(QString cleanedHtml READ cleanedHtml WRITE setCleanedHtml NOTIFY cleanedHtmlChanged)

public:
    explicit CleanTextEdit(QWidget *parent = nullptr);

    // The content as restricted markup; blocks and soft line breaks alike are written "<br>".
    [[nodiscard]] QString cleanedHtml() const;
    // Replaces the content and starts a fresh undo history. The toolkit parses html as it can; of
    // markup that is nested beyond reason only text and line breaks are taken.
    void setCleanedHtml(const QString &html);

    // The restricted markup of any document: every fragment in the pair of tags of its own
    // alignment, neighbours not merged, all other formatting dropped.
    [[nodiscard]] QString extractAllowedHtmlFromDocument(QTextDocument *document) const;

    // Two lines high: a form of many fields has to fit on a small laptop's screen.
    [[nodiscard]] QSize minimumSizeHint() const override;
    // As high as that: where labels are wrapped, a layout shrinks nothing below its size hint.
    [[nodiscard]] QSize sizeHint() const override;

    // Nothing: an entry may come from a stranger, so what its markup refers to is not fetched.
    QVariant loadResource(int type, const QUrl &name) override;

signals:
    void cleanedHtmlChanged();

protected:
    // What is selected goes to the clipboard whole: as markup, if some of it is not shown.
    [[nodiscard]] QMimeData *createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData *source) override;
    // Inserts text at the cursor, in its format; whether that was done. It is not, and nothing is,
    // if the layout of the text takes no longer than that of others.
    [[nodiscard]] bool insertedPlainly(const QString &text);

private slots:
    void onTextChanged();

private:
    void setPlainly(const QString &text);
    void wrapAnywhere(bool anywhere);

    QString m_longText; // the last text that was set, if it is long and nothing was changed since
};
