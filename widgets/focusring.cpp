// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/focusring.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QFocusFrame>
#include <QLabel>
#include <QPainter>

namespace
{

// Not every style draws focus frames; only the width comes from the style.
class RingFrame final : public QFocusFrame
{
public:
    using QFocusFrame::QFocusFrame;

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter(this).fillRect(rect(), QApplication::palette().color(QPalette::Highlight));
    }
};

bool needsRing(const QWidget *widget)
{
    const bool isInPopup = widget->window()->windowType() == Qt::Popup;
    return !isInPopup
           && (qobject_cast<const QAbstractScrollArea *>(widget)
               || qobject_cast<const QLabel *>(widget));
}

} // namespace

FocusRing::FocusRing(QObject *parent) : QObject(parent)
{
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget * /*old*/, QWidget *now) { follow(now); });
}

FocusRing::~FocusRing()
{
    delete m_frame;
}

void FocusRing::follow(QWidget *focused)
{
    const bool wanted = focused && !focused->isWindow() && needsRing(focused);
    if (!wanted) {
        delete m_frame;
        return;
    }
    if (!m_frame)
        m_frame = new RingFrame;
    m_frame->setWidget(focused);
}
