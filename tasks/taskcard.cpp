#include "tasks/taskcard.h"

#include "resources/namedcolors.h"
#include "tasks/chartpainter.h"
#include "tasks/dashboardtexts.h"
#include "tasks/taskcollectionmodel.h"
#include "tasks/taskcollectionviewcelldelegate.h"
#include "views/cardshadow.h"
#include "views/syncmarkpainter.h"
#include "views/textscale.h"
#include "views/touchtarget.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPixmapCache>
#include <QStyle>

namespace ravelin {

namespace {

constexpr int chartSide = 54;
constexpr int nameLines = 2;
constexpr QMargins contentMargins{14, 12, 12, 12};
constexpr int chipHeight = 20;
constexpr int chipPadding = 9;
constexpr int buttonHeight = 28;

QColor priorityColor(TaskPriority priority)
{
    switch (priority) {
    case TaskPriority::highest: return NamedColors::color(ColorNames::customRed, Qt::red);
    case TaskPriority::high: return NamedColors::color(ColorNames::customOrange, QColor(255, 149, 0));
    case TaskPriority::medium: return NamedColors::color(ColorNames::customYellow, Qt::yellow);
    case TaskPriority::low: return NamedColors::color(ColorNames::customBlue, Qt::blue);
    case TaskPriority::all: break;
    }
    return NamedColors::color(ColorNames::customGray, Qt::gray);
}

// A designed length at the worker's text size.
int px(int designPixels)
{
    return TextScale::scaled(designPixels);
}

QMargins contentMarginsNow()
{
    return {px(contentMargins.left()), px(contentMargins.top()), px(contentMargins.right()),
            px(contentMargins.bottom())};
}

// The card's shadows are the same for every card: drawn once per look and
// screen density, then only copied.
QPixmap cardBackground(qreal ratio, const QColor &fill)
{
    const int margin = px(TaskCollectionViewCell::shadowMargin);
    const QSize size(px(TaskCollectionViewCell::cardWidth), px(TaskCollectionViewCell::cardHeight));
    const QString key = QStringLiteral("ravelin-task-card-%1-%2-%3-%4x%5")
                            .arg(ratio)
                            .arg(fill.rgba(), 0, 16)
                            .arg(NamedColors::color(ColorNames::customShadow, Qt::white).rgba(), 0, 16)
                            .arg(size.width())
                            .arg(size.height());
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    const QSize logical(size.width() + 2 * margin, size.height() + 2 * margin);
    pixmap = QPixmap((QSizeF(logical) * ratio).toSize());
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        const QRectF card(QPointF(margin, margin), QSizeF(size));
        const qreal radius = TextScale::scaled(TaskCollectionViewCell::cornerRadius);
        CardShadow::paintShadow(painter, card, radius,
                                {NamedColors::color(ColorNames::customShadow, Qt::black), QPointF(0, 1), 0.2, 2.0});
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath path;
        path.addRoundedRect(card, radius, radius);
        painter.fillPath(path, fill);
    }
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace

TaskCollectionViewCell::TaskCollectionViewCell(QObject *parent)
    : QStyledItemDelegate(parent)
{
    setObjectName(reuseIdentifier);
}

QSize TaskCollectionViewCell::itemSize()
{
    return TextScale::scaled(designItemSize);
}

QRect TaskCollectionViewCell::cardFrame(const QRect &itemRect)
{
    return {itemRect.x() + px(leadingInset), itemRect.y() + px(shadowMargin), px(cardWidth), px(cardHeight)};
}

QRect TaskCollectionViewCell::acknowledgeButtonRect(const QRect &itemRect)
{
    const QRect content = cardFrame(itemRect).marginsRemoved(contentMarginsNow());
    return {content.left(), content.bottom() + 1 - px(buttonHeight), content.width(), px(buttonHeight)};
}

QRect TaskCollectionViewCell::acknowledgeTapRect(const QRect &itemRect)
{
    return TouchTarget::around(acknowledgeButtonRect(itemRect), cardFrame(itemRect));
}

QRect TaskCollectionViewCell::chartRect(const QRect &itemRect)
{
    const QRect content = cardFrame(itemRect).marginsRemoved(contentMarginsNow());
    return {content.right() + 1 - px(chartSide), content.top(), px(chartSide), px(chartSide)};
}

void TaskCollectionViewCell::didTapAcknowledge(const QModelIndex &index) const
{
    const TaskPtr task = index.data(TaskCollectionModel::TaskRole).value<TaskPtr>();
    if (!task || !m_delegate)
        return;
    m_delegate->didTapAcknowledge(task);
}

QString TaskCollectionViewCell::twoLineName(const QString &name, const QFont &font, int width)
{
    const QFontMetrics metrics(font);
    if (width <= 0 || metrics.horizontalAdvance(name) <= width)
        return name;
    // Break before the last word that still fits on the first line.
    int cut = 0;
    for (int i = 1; i <= name.size(); ++i) {
        if (metrics.horizontalAdvance(name.left(i)) > width)
            break;
        if (i == name.size() || name.at(i).isSpace())
            cut = i;
    }
    if (cut == 0) {
        // One long word: break it where the line is full.
        while (cut < name.size() && metrics.horizontalAdvance(name.left(cut + 1)) <= width)
            ++cut;
    }
    const QString first = name.left(cut).trimmed();
    const QString rest = name.mid(cut).trimmed();
    return first + QLatin1Char('\n') + metrics.elidedText(rest, Qt::ElideRight, width);
}

QSize TaskCollectionViewCell::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return itemSize();
}

void TaskCollectionViewCell::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    const TaskPtr task = index.data(TaskCollectionModel::TaskRole).value<TaskPtr>();
    if (!task)
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::TextAntialiasing);

    const QRect card = cardFrame(option.rect);
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    painter->drawPixmap(card.topLeft() - QPoint(px(shadowMargin), px(shadowMargin)),
                        cardBackground(ratio, NamedColors::color(ColorNames::viewBackground, Qt::white)));
    const QRect content = card.marginsRemoved(contentMarginsNow());

    // Priority chip, top left.
    const QString priority = TaskPriorities::text(task->priority);
    const QFont chipFont = TextScale::font(option.font, 11, QFont::DemiBold);
    const int chipWidth = QFontMetrics(chipFont).horizontalAdvance(priority) + 2 * px(chipPadding);
    const QRectF chip(content.left(), content.top(), chipWidth, px(chipHeight));
    const QColor chipColor = priorityColor(task->priority);
    QColor chipFill = chipColor;
    chipFill.setAlphaF(0.18f);
    painter->setPen(Qt::NoPen);
    painter->setBrush(chipFill);
    painter->drawRoundedRect(chip, chip.height() / 2.0, chip.height() / 2.0);
    painter->setFont(chipFont);
    // Yellow and orange need a deeper tone to read on a light chip.
    painter->setPen(chipColor.darker(task->priority == TaskPriority::medium ? 165 : 125));
    painter->drawText(chip, Qt::AlignCenter, priority);
    // A change not on the server yet: marked right of the chip.
    SyncMarkPainter::paint(
        *painter, QRect(int(chip.right()) + px(6), content.top(), content.width(), int(chip.height())),
        Qt::AlignLeft | Qt::AlignVCenter, index.data(TaskCollectionModel::SyncMarkRole).value<SyncMark>(), option.font);

    // Item progress, top right.
    const ChartData items = DashboardTexts::itemsChart(task->progress);
    ChartPainter::paint(
        *painter, chartRect(option.rect),
        Chart::itemsProgress(items.names, items.values, items.colors, int(task->progress.total), false));

    // Name on two lines at most, then the category right under it.
    const QFont nameFont = TextScale::font(option.font, 15, QFont::DemiBold);
    const QFontMetrics nameMetrics(nameFont);
    const int nameTop = content.top() + px(chartSide) + px(8);
    const QString name = twoLineName(task->name, nameFont, content.width());
    const int nameHeight
        = nameMetrics.lineSpacing() * int(std::min<qsizetype>(name.count(QLatin1Char('\n')) + 1, nameLines));
    painter->setFont(nameFont);
    painter->setPen(NamedColors::color(ColorNames::labelText, Qt::black));
    painter->drawText(QRect(content.left(), nameTop, content.width(), nameHeight), Qt::AlignLeft | Qt::AlignTop, name);

    const QFont categoryFont = TextScale::font(option.font, 12, QFont::Normal);
    painter->setFont(categoryFont);
    painter->setPen(NamedColors::color(ColorNames::secondaryLabelText, Qt::darkGray));
    const QFontMetrics categoryMetrics(categoryFont);
    painter->drawText(QRect(content.left(), nameTop + nameHeight, content.width(), categoryMetrics.height()),
                      Qt::AlignLeft | Qt::AlignTop,
                      categoryMetrics.elidedText(task->taskCategory.name, Qt::ElideRight, content.width()));

    if (DashboardTexts::showsAcknowledgeButton(*task)) {
        const QColor accent = NamedColors::color(ColorNames::accent, QColor(0, 122, 255));
        const bool pressed = m_pressed.isValid() && m_pressed == index;
        const QRect button = acknowledgeButtonRect(option.rect);
        painter->setPen(Qt::NoPen);
        painter->setBrush(pressed ? accent.darker(125) : accent);
        painter->drawRoundedRect(button, px(8), px(8));
        painter->setFont(TextScale::font(option.font, 12, QFont::DemiBold));
        painter->setPen(Qt::white);
        painter->drawText(button, Qt::AlignCenter, DashboardTexts::acknowledgeTitle());
    }

    // Keyboard focus only: a tap does not ring the card.
    if ((option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_KeyboardFocusChange)) {
        // Keyboard focus: a ring around the card in the accent colour.
        const qreal radius = TextScale::scaled(cornerRadius);
        QPen ring(NamedColors::color(ColorNames::accent, QColor(0, 122, 255)), 2);
        painter->setPen(ring);
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(QRectF(card).adjusted(-1, -1, 1, 1), radius + 1, radius + 1);
    }
    painter->restore();
}

} // namespace ravelin
