#include "filter/donetoolbar.h"

#include "resources/namedcolors.h"
#include "views/focusring.h"
#include "views/textscale.h"
#include "views/touchtarget.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QToolButton>

namespace ravelin {

DoneToolbar::DoneToolbar(int tag, QWidget *parent)
    : QWidget(parent)
    , m_tag(tag)
{
    setObjectName(QStringLiteral("doneToolbar"));
    setFixedHeight(TextScale::scaled(barHeight));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 0, 8, 0);
    row->addStretch(1);
    m_done = new QToolButton(this);
    m_done->setObjectName(QStringLiteral("doneButton"));
    m_done->setText(tr("Done"));
    m_done->setAccessibleName(tr("Done"));
    // A tap leaves the focus where it is; Tab reaches the button.
    m_done->setFocusPolicy(Qt::TabFocus);
    m_done->setCursor(Qt::PointingHandCursor);
    m_done->setAutoRaise(true);
    m_done->setMinimumHeight(TouchTarget::minimumSide);
    m_done->setStyleSheet(QStringLiteral("QToolButton { border: 2px solid transparent; border-radius: 8px;"
                                         " padding: 4px 8px; color: %1; %3 font-weight: 600; }"
                                         "QToolButton:pressed { color: %2; }"
                                         "QToolButton:focus { border-color: %4; }")
                              .arg(NamedColors::color(ColorNames::accent, QColor(0x25, 0x63, 0xC4)).name(),
                                   NamedColors::color(ColorNames::secondaryLabelText, QColor(Qt::gray)).name(),
                                   TextScale::styleSize(16), FocusRing::color().name()));
    row->addWidget(m_done);
    connect(m_done, &QToolButton::clicked, this, [this] { emit donePressed(m_tag); });
}

void DoneToolbar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QColor bar = NamedColors::color(ColorNames::groupedBackground, QColor(0xF1, 0xF3, 0xF6));
    painter.fillRect(rect(), bar);
    painter.setPen(NamedColors::color(ColorNames::separator, QColor(0xDD, 0xE1, 0xE6)));
    painter.drawLine(rect().topLeft(), rect().topRight());
}

} // namespace ravelin
