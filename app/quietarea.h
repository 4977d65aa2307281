// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

class QMdiArea;

// Sub-windows by the hundred. Each one that is shown, and each successor of one that is closed,
// becomes the active one: the area lays it out at full size, gives it the focus and visits all the
// others, so that the time would grow with the square of their number.

// For as long as it lives, sub-windows that are added to an area and shown do not become active and
// are not painted.
class QuietArea
{
    Q_DISABLE_COPY_MOVE(QuietArea)

public:
    explicit QuietArea(QMdiArea *area);
    ~QuietArea();

private:
    QMdiArea *m_area;
};

// Closes all sub-windows of an area, the current one last, so that none becomes active on the way.
void closeQuietly(QMdiArea *area);
