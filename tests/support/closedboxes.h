// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>

class QEvent;

// Closes every message box as soon as it is shown, without a timer, and keeps what it said: for
// campaigns that see thousands of them.
class ClosedBoxes : public QObject
{
    Q_OBJECT

public:
    ClosedBoxes();

    // "title: text" of the boxes since the last call.
    [[nodiscard]] QStringList take();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QStringList m_seen;
};
