#include "items/itemtableviewcell.h"

#include "items/itemlistmodel.h"
#include "items/itemstexts.h"
#include "resources/namedcolors.h"
#include "resources/namedimages.h"
#include "views/cardshadow.h"
#include "views/syncmarkpainter.h"
#include "views/textscale.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace ravelin {

namespace {

constexpr int leading = 14;
constexpr int trailing = 10;
constexpr int vertical = 12;
constexpr int lineGap = 4;
constexpr int selectionColumn = 34;
constexpr int accessoryGap = 10;

// Texts at their designed sizes, grown with the worker's text size.
QFont titleFont(const QFont &base)
{
    return TextScale::font(base, 15, QFont::DemiBold);
}

QFont detailsFont(const QFont &base)
{
    return TextScale::font(base, 13);
}

// The width left for the texts of a row whose card is `cardWidth` wide.
int textWidth(int cardWidth, bool editing)
{
    return cardWidth - leading - trailing - int(ItemTableViewCell::accessorySize.width() + 12.5) - accessoryGap
        - (editing ? selectionColumn : 0);
}

QPixmap image(const QString &name, int side, qreal ratio)
{
    const QString key = QStringLiteral("ravelin-item-%1-%2-%3").arg(name).arg(side).arg(ratio);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = NamedImages::pixmap(name, QSize(side, side), ratio);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

} // namespace

ItemTableViewCell::ItemTableViewCell(QObject *parent)
    : QStyledItemDelegate(parent)
{
    setObjectName(reuseIdentifier);
}

void ItemTableViewCell::setSwipe(const QModelIndex &index, qreal offset)
{
    m_swiped = index;
    m_swipeOffset = index.isValid() ? offset : 0;
}

QRect ItemTableViewCell::cardFrame(const QRect &rowRect)
{
    return rowRect.adjusted(cardInset, cardInset, -cardInset, -cardInset);
}

QRectF ItemTableViewCell::accessoryRect(const QRect &rowRect)
{
    const QRect card = cardFrame(rowRect);
    // The QR image overhangs the box by 12.5 points: the box keeps clear of it.
    const qreal right = card.right() + 1 - trailing - 12.5;
    return {right - accessorySize.width(), card.center().y() + 0.5 - accessorySize.height() / 2, accessorySize.width(),
            accessorySize.height()};
}

QList<QRect> ItemTableViewCell::swipeActionRects(const QRect &rowRect, qsizetype actions)
{
    const QRect card = cardFrame(rowRect);
    QList<QRect> rects;
    const int width = scaledSwipeActionWidth();
    for (qsizetype i = 0; i < actions; ++i) {
        const int left = card.right() + 1 - int(actions - i) * width;
        rects.append(QRect(left, card.top(), width, card.height()));
    }
    return rects;
}

int ItemTableViewCell::rowHeight(const QString &title, const QString &details, const QFont &font, int width,
                                 bool editing)
{
    const int available = std::max(40, textWidth(width - 2 * cardInset, editing));
    const QFontMetrics titleMetrics(titleFont(font));
    const QFontMetrics detailsMetrics(detailsFont(font));
    const int titleHeight = titleMetrics.boundingRect(QRect(0, 0, available, 10000), Qt::TextWordWrap, title).height();
    const int detailsHeight = details.isEmpty()
        ? 0
        : detailsMetrics.boundingRect(QRect(0, 0, available, 10000), Qt::TextWordWrap, details).height();
    const int content = vertical + titleHeight + (details.isEmpty() ? 0 : lineGap + detailsHeight) + vertical;
    return std::max(TextScale::scaled(minHeight), content + 2 * cardInset);
}

int ItemTableViewCell::scaledSwipeActionWidth()
{
    return TextScale::scaled(swipeActionWidth);
}

QSize ItemTableViewCell::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    // Measured at the width asked for, else at the list's own width.
    const int width = option.rect.width() > 0 ? option.rect.width() : option.widget ? option.widget->width() : 360;
    return {width,
            rowHeight(index.data().toString(), index.data(TaskItemsModel::DetailsRole).toString(), option.font, width,
                      m_editing)};
}

void ItemTableViewCell::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    const bool swiped = m_swiped.isValid() && m_swiped == index && m_swipeOffset > 0;

    if (swiped) {
        // The actions behind the card, in the statuses' colours.
        const QRect card = cardFrame(option.rect);
        QPainterPath clip;
        clip.addRoundedRect(QRectF(card), cornerRadius, cornerRadius);
        painter->setClipPath(clip);
        const QList<QRect> rects = swipeActionRects(option.rect, 2);
        const QList<ItemStatus> statuses{ItemStatus::ok, ItemStatus::nok};
        painter->setFont(TextScale::font(option.font, 13, QFont::DemiBold));
        for (qsizetype i = 0; i < rects.size(); ++i) {
            const bool ok = statuses.at(i) == ItemStatus::ok;
            painter->fillRect(
                rects.at(i),
                NamedColors::color(ok ? ColorNames::customGreen : ColorNames::customRed, ok ? Qt::green : Qt::red));
            painter->setPen(Qt::white);
            painter->drawText(rects.at(i), Qt::AlignCenter, ItemStatuses::text(statuses.at(i)));
        }
        painter->setClipping(false);
        painter->translate(-m_swipeOffset, 0);
    }

    const QRect card = cardFrame(option.rect);
    CardShadow::paintCard(*painter, QRectF(card), cornerRadius,
                          NamedColors::color(ColorNames::viewBackground, Qt::white));
    SyncMarkPainter::paint(*painter, card.adjusted(0, 4, -8, -4), Qt::AlignRight | Qt::AlignBottom,
                           index.data(TaskItemsModel::SyncMarkRole).value<SyncMark>(), option.font);

    int left = card.left() + leading;
    if (m_editing) {
        // The selection mark: an empty ring, or a filled accent disc with a tick.
        const bool selected = option.state & QStyle::State_Selected;
        const QRectF mark(left, card.center().y() - 10.5, 22, 22);
        const QColor accent = NamedColors::color(ColorNames::accent, QColor(0, 122, 255));
        if (selected) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(accent);
            painter->drawEllipse(mark);
            QPainterPath tick;
            tick.moveTo(mark.left() + 6, mark.center().y() + 0.5);
            tick.lineTo(mark.left() + 9.5, mark.center().y() + 4);
            tick.lineTo(mark.right() - 5.5, mark.top() + 7);
            painter->setPen(QPen(Qt::white, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter->setBrush(Qt::NoBrush);
            painter->drawPath(tick);
        } else {
            painter->setPen(QPen(NamedColors::color(ColorNames::customGray, Qt::gray), 1.5));
            painter->setBrush(Qt::NoBrush);
            painter->drawEllipse(mark.adjusted(0.75, 0.75, -0.75, -0.75));
        }
        left += selectionColumn;
    }

    const int width = std::max(40, textWidth(card.width(), m_editing));
    const QFontMetrics titleMetrics(titleFont(option.font));
    const QString title = index.data().toString();
    const QString details = index.data(TaskItemsModel::DetailsRole).toString();
    const int titleHeight = titleMetrics.boundingRect(QRect(0, 0, width, 10000), Qt::TextWordWrap, title).height();
    const int detailsHeight = details.isEmpty()
        ? 0
        : QFontMetrics(detailsFont(option.font))
              .boundingRect(QRect(0, 0, width, 10000), Qt::TextWordWrap, details)
              .height();
    const int block = titleHeight + (details.isEmpty() ? 0 : lineGap + detailsHeight);
    int top = card.top() + std::max(vertical, (card.height() - block) / 2);
    painter->setFont(titleFont(option.font));
    painter->setPen(NamedColors::color(ColorNames::labelText, Qt::black));
    painter->drawText(QRect(left, top, width, titleHeight), Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignTop, title);
    if (!details.isEmpty()) {
        top += titleHeight + lineGap;
        painter->setFont(detailsFont(option.font));
        painter->setPen(NamedColors::color(ColorNames::secondaryLabelText, Qt::darkGray));
        painter->drawText(QRect(left, top, width, detailsHeight), Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignTop,
                          details);
    }

    // The accessory: the status image at its origin, the QR image beside it.
    const QRectF accessory = accessoryRect(option.rect);
    painter->drawPixmap(QPointF(accessory.left(), accessory.top()),
                        image(index.data(TaskItemsModel::StatusImageRole).toString(), imageSide, ratio));
    if (index.data(TaskItemsModel::HasQRCodeRole).toBool())
        painter->drawPixmap(QPointF(accessory.left() + imageSide, accessory.top()),
                            image(ImageNames::qrCode, imageSide, ratio));

    // Keyboard focus only: a tap does not ring the card.
    if ((option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_KeyboardFocusChange)) {
        painter->setPen(QPen(NamedColors::color(ColorNames::accent, QColor(0, 122, 255)), 2));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(QRectF(card).adjusted(1, 1, -1, -1), cornerRadius, cornerRadius);
    }
    painter->restore();
}

} // namespace ravelin
