#include "views/buttonrow.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QResizeEvent>

namespace ravelin {

ButtonRow::ButtonRow(QWidget *parent)
    : QWidget(parent)
    , m_layout(new QBoxLayout(QBoxLayout::LeftToRight, this))
{ }

void ButtonRow::addButton(QAbstractButton *button)
{
    m_buttons.append(button);
    m_layout->addWidget(button, 1);
    arrange(width());
}

bool ButtonRow::isStacked() const
{
    return m_layout->direction() == QBoxLayout::TopToBottom;
}

void ButtonRow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange(event->size().width());
}

void ButtonRow::arrange(int width)
{
    if (m_buttons.isEmpty() || width <= 0)
        return;
    const QMargins margins = m_layout->contentsMargins();
    const auto count = int(m_buttons.size());
    const int share = (width - margins.left() - margins.right() - m_layout->spacing() * (count - 1)) / count;
    bool fits = true;
    for (const QAbstractButton *button : std::as_const(m_buttons))
        fits = fits && button->sizeHint().width() <= share;
    const QBoxLayout::Direction direction = fits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom;
    if (m_layout->direction() != direction)
        m_layout->setDirection(direction);
}

} // namespace ravelin
