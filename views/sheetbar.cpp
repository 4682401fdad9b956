#include "views/sheetbar.h"

#include "resources/namedcolors.h"
#include "views/focusring.h"
#include "views/textscale.h"
#include "views/touchtarget.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace ravelin {

SheetBar::SheetBar(const QString &title, QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("sheetBar"));
    setFixedHeight(TextScale::scaled(barHeight));
    const QColor accent = NamedColors::color(ColorNames::accent, QColor(0, 122, 255));

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(8, 0, 8, 0);
    m_cancel = new QPushButton(tr("Cancel"), this);
    m_cancel->setObjectName(QStringLiteral("cancelButton"));
    // A tap leaves the focus where it is; Tab reaches the button.
    m_cancel->setFocusPolicy(Qt::TabFocus);
    m_cancel->setCursor(Qt::PointingHandCursor);
    m_cancel->setFlat(true);
    m_cancel->setMinimumSize(TouchTarget::minimumSide, TouchTarget::minimumSide);
    m_cancel->setStyleSheet(
        QStringLiteral("QPushButton { color: %1; border: 2px solid transparent; border-radius: 8px;"
                       " %3 padding: 4px 6px; }"
                       "QPushButton:pressed { color: %2; }"
                       "QPushButton:focus { border-color: %4; }")
            .arg(accent.name(), accent.lighter(150).name(), TextScale::styleSize(16), FocusRing::color().name()));
    connect(m_cancel, &QPushButton::clicked, this, &SheetBar::cancelled);
    row->addWidget(m_cancel, 0, Qt::AlignLeft);

    m_title = new QLabel(title, this);
    m_title->setObjectName(QStringLiteral("sheetTitle"));
    m_title->setAlignment(Qt::AlignCenter);
    m_title->setFont(TextScale::font(m_title->font(), 17, QFont::DemiBold));
    m_title->setStyleSheet(
        QStringLiteral("color: %1;").arg(NamedColors::color(ColorNames::labelText, QColor(Qt::black)).name()));
    row->addWidget(m_title, 1);
    // Balances the cancel button so that the title stays in the middle.
    row->addSpacing(m_cancel->sizeHint().width());
}

QString SheetBar::title() const
{
    return m_title->text();
}

void SheetBar::setTitle(const QString &title)
{
    m_title->setText(title);
}

void SheetBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), NamedColors::color(ColorNames::viewBackground, Qt::white));
    painter.fillRect(QRect(0, height() - 1, width(), 1), NamedColors::color(ColorNames::separator, Qt::lightGray));
}

} // namespace ravelin
