// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "widgets/cleantextedit.h"

// A CleanTextEdit for one line: Return goes to the parent widget, and pasted or dropped text
// becomes plain, on one line, in the format at the cursor. Its height is that of its document plus
// 5 pixels; only key presses and insertions update it. Without the focus it shows the beginning of
// its text. If the text does not fit, its tool tip also has the whole text.
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
