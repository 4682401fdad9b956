#include "views/reusableshadowtableviewcell.h"

#include "resources/namedcolors.h"
#include "views/cardshadow.h"

#include <QLayout>
#include <QResizeEvent>

#include <cmath>

namespace ravelin {

ReusableShadowTableViewCell::ReusableShadowTableViewCell(QWidget *parent)
    : QWidget(parent)
    , m_color(NamedColors::color(ColorNames::viewBackground, QColor(Qt::white)))
{
    m_contentView = new QWidget(this);
    m_contentView->setObjectName(QStringLiteral("contentView"));
    m_contentView->setAutoFillBackground(false);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    layoutCard();
}

void ReusableShadowTableViewCell::setMinHeight(qreal height)
{
    if (qFuzzyCompare(m_minHeight, height))
        return;
    m_minHeight = height;
    updateGeometry();
    emit appearanceChanged();
}

void ReusableShadowTableViewCell::setCornerRadius(qreal radius)
{
    if (qFuzzyCompare(m_cornerRadius, radius))
        return;
    m_cornerRadius = radius;
    layoutCard();
    emit appearanceChanged();
}

void ReusableShadowTableViewCell::setColor(const QColor &color)
{
    if (m_color == color)
        return;
    m_color = color;
    layoutCard();
    emit appearanceChanged();
}

QRect ReusableShadowTableViewCell::cardFrame() const
{
    return ViewGeometry::cellFrame(rect());
}

int ReusableShadowTableViewCell::fittedHeight(int width) const
{
    qreal laidOut = height();
    if (QLayout *layout = m_contentView->layout()) {
        const int cardWidth = std::max(0, width - static_cast<int>(2 * ViewGeometry::cellGap));
        const int contentHeight
            = layout->hasHeightForWidth() ? layout->totalHeightForWidth(cardWidth) : layout->totalSizeHint().height();
        laidOut = contentHeight + 2 * ViewGeometry::cellGap;
    }
    return static_cast<int>(std::ceil(ViewGeometry::fittedCellHeight(laidOut, m_minHeight)));
}

QSize ReusableShadowTableViewCell::sizeHint() const
{
    int hintWidth = width();
    if (QLayout *layout = m_contentView->layout())
        hintWidth = layout->totalSizeHint().width() + static_cast<int>(2 * ViewGeometry::cellGap);
    return {hintWidth, heightForWidth(width())};
}

QSize ReusableShadowTableViewCell::minimumSizeHint() const
{
    int minimumWidth = static_cast<int>(2 * ViewGeometry::cellGap);
    if (QLayout *layout = m_contentView->layout())
        minimumWidth += layout->totalMinimumSize().width();
    return {minimumWidth, static_cast<int>(std::ceil(m_minHeight))};
}

int ReusableShadowTableViewCell::heightForWidth(int width) const
{
    return fittedHeight(width);
}

void ReusableShadowTableViewCell::prepareForReuse()
{
    layoutCard();
    updateGeometry();
}

void ReusableShadowTableViewCell::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layoutCard();
}

void ReusableShadowTableViewCell::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    layoutCard();
}

void ReusableShadowTableViewCell::layoutCard()
{
    m_contentView->setGeometry(ViewGeometry::cellFrame(rect()));
    CardShadow::applyCardShadow(m_contentView, m_cornerRadius, m_color);
}

} // namespace ravelin
