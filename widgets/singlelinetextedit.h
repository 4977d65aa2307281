// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "widgets/cleantextedit.h"

// A CleanTextEdit for one line: Return goes to the parent widget, what is pasted or dropped becomes
// plain text on one line in the format at the cursor. Its height is that of its document plus 5
// pixels, taken anew after key presses and insertions only; content that is set from outside leaves
// it alone. Without the focus it shows the beginning of its text, and its tool tip has the whole
// text whenever that does not fit, beside what else the field's tool tip says.
class SingleLineTextEdit : public CleanTextEdit
{
    Q_OBJECT

public:
    explicit SingleLineTextEdit(QWidget *parent = nullptr);

    void adjustHeight();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    void setSheetForLater(const QString &sheet);
    void styleParts();
    void showBeginning();
    void showCursor(Qt::FocusReason reason);
    [[nodiscard]] bool showsAll() const;
    [[nodiscard]] QString wholeTip() const;
};
