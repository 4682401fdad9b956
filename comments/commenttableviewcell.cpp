#include "comments/commenttableviewcell.h"

#include "comments/commentthreadmodel.h"
#include "resources/namedcolors.h"
#include "resources/namedimages.h"
#include "views/cardshadow.h"
#include "views/focusring.h"
#include "views/syncmarkpainter.h"
#include "views/textscale.h"

#include <QFile>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <QStyle>
#include <QWidget>

#include <cmath>

namespace ravelin {

namespace {

constexpr int sideMargin = 12;
constexpr int rowGap = 6;
constexpr int cardPadding = 12;
constexpr qreal cardRadius = 14;

// Sizes are the designed ones at the worker's text size.
QFont sized(const QFont &base, int pixelSize, QFont::Weight weight)
{
    return TextScale::font(base, pixelSize, weight);
}

// The font of the details line's metrics: the thin system font of size 12.
QFont thinTwelve()
{
    return TextScale::font(QFont(), 12, QFont::Thin);
}

int textHeight(const QFont &font, int width, const QString &text)
{
    if (text.isEmpty())
        return 0;
    return QFontMetrics(font).boundingRect(QRect(0, 0, std::max(1, width), 100000), Qt::TextWordWrap, text).height();
}

QList<DetailFragment> fragmentsOf(const QModelIndex &index)
{
    return index.data(CommentThreadModel::DetailsRole).value<QList<DetailFragment>>();
}

int width(const QStyleOptionViewItem &option)
{
    return option.rect.width() > 0 ? option.rect.width() : option.widget ? option.widget->width() : 360;
}

} // namespace

CommentTableViewCell::CommentTableViewCell(QObject *parent)
    : QStyledItemDelegate(parent)
{
    setObjectName(reuseIdentifier);
}

QRectF CommentTableViewCell::detailIconBounds()
{
    const QFont font = thinTwelve();
    const QFontMetricsF metrics(font);
    const qreal size = font.pixelSize();
    // Descender counted as it is below the baseline: negative.
    const qreal descender = -metrics.descent();
    const qreal y = descender + metrics.capHeight() + (descender - size * 0.5) + 2;
    const QRectF exact(0, y, size, size);
    return QRectF(QPointF(std::floor(exact.left()), std::floor(exact.top())),
                  QPointF(std::ceil(exact.right()), std::ceil(exact.bottom())));
}

QColor CommentTableViewCell::fragmentColor(const DetailFragment &fragment)
{
    QColor color = NamedColors::color(fragment.colorName, fragment.fallbackColor);
    color.setAlphaF(float(fragment.alpha));
    return color;
}

QImage CommentTableViewCell::detailIcon(const DetailFragment &fragment, qreal devicePixelRatio)
{
    const QSize side = detailIconBounds().size().toSize();
    return NamedImages::image(fragment.iconName, side, fragmentColor(fragment), devicePixelRatio);
}

QImage CommentTableViewCell::authorIcon(const QString &iconName)
{
    // The host application's own images, as it names them.
    for (const QString &name : {iconName, QStringLiteral("list_pin_people_01.png")}) {
        for (const QString &path :
             {QStringLiteral(":/") + name, QStringLiteral(":/") + name + QStringLiteral(".png"),
              QStringLiteral(":/images/") + name, QStringLiteral(":/images/") + name + QStringLiteral(".png")}) {
            if (QFile::exists(path)) {
                QImage image(path);
                if (!image.isNull())
                    return image;
            }
        }
    }
    return {};
}

CommentTableViewCell::Layout CommentTableViewCell::layout(const QStyleOptionViewItem &option, const QModelIndex &index)
{
    Layout l;
    const QRect row(option.rect.left(), option.rect.top(), width(option), option.rect.height());
    const int top = row.top() + rowGap;
    l.avatar = QRect(row.left() + sideMargin, top + 4, avatarSide, avatarSide);
    const int cardLeft = l.avatar.right() + 1 + 8;
    const int cardWidth = row.right() + 1 - sideMargin - cardLeft;
    const int inner = cardWidth - 2 * cardPadding;
    const QFont authorFont = sized(option.font, 14, QFont::DemiBold);
    const QFont timeFont = sized(option.font, 12, QFont::Normal);
    const QFont detailsFont = sized(option.font, 12, QFont::Normal);
    const QFont textFont = sized(option.font, 15, QFont::Normal);

    int y = top + cardPadding;
    const int authorHeight = QFontMetrics(authorFont).height();
    const QString time = index.data(CommentThreadModel::TimeTextRole).toString();
    const int timeWidth = index.data(CommentThreadModel::ShowsTimeRole).toBool()
        ? QFontMetrics(timeFont).horizontalAdvance(time) + 4
        : 0;
    l.time = QRect(cardLeft + cardWidth - cardPadding - timeWidth, y, timeWidth, authorHeight);
    l.author = QRect(cardLeft + cardPadding, y, inner - timeWidth - (timeWidth ? 8 : 0), authorHeight);
    y += authorHeight + 4;

    const QList<DetailFragment> fragments = fragmentsOf(index);
    if (!fragments.isEmpty()) {
        const int lineHeight
            = std::max<int>(QFontMetrics(detailsFont).lineSpacing(), int(detailIconBounds().height()) + 2);
        l.details = QRect(cardLeft + cardPadding, y, inner, int(fragments.size()) * lineHeight);
        y += l.details.height() + 4;
    }
    const QString text = index.data().toString();
    const int textH = textHeight(textFont, inner, text);
    l.text = QRect(cardLeft + cardPadding, y, inner, textH);
    y += textH;

    // The picture has a box of its own size: the layout never waits for it.
    if (index.data(CommentThreadModel::HasPictureRole).toBool()) {
        y += textH > 0 ? 8 : 0;
        l.picture = QRect(cardLeft + cardPadding, y, std::min(thumbnailBox.width(), inner), thumbnailBox.height());
        y += thumbnailBox.height();
    }
    y += cardPadding;
    l.card = QRect(cardLeft, top, cardWidth, y - top);
    l.height = std::max(minHeight, y - row.top() + rowGap);
    return l;
}

QSize CommentTableViewCell::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (index.data(CommentThreadModel::KindRole).value<CommentThreadModel::RowKind>()
        == CommentThreadModel::RowKind::dayHeader)
        return {width(option), TextScale::scaled(headerHeight)};
    QStyleOptionViewItem measured = option;
    measured.rect = QRect(0, 0, width(option), 0);
    return {width(option), layout(measured, index).height};
}

void CommentTableViewCell::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    if (index.data(CommentThreadModel::KindRole).value<CommentThreadModel::RowKind>()
        == CommentThreadModel::RowKind::dayHeader)
        paintHeader(painter, option, index);
    else
        paintComment(painter, option, index);
    painter->restore();
}

void CommentTableViewCell::paintHeader(QPainter *painter, const QStyleOptionViewItem &option,
                                       const QModelIndex &index) const
{
    const QString text = index.data().toString();
    const QFont font = sized(option.font, 12, QFont::DemiBold);
    const int textWidth = QFontMetrics(font).horizontalAdvance(text);
    const qreal pillHeight = TextScale::scaled(22.0);
    const QRectF pill(option.rect.center().x() - textWidth / 2.0 - 12, option.rect.center().y() - pillHeight / 2.0,
                      textWidth + 24, pillHeight);
    QColor fill = NamedColors::color(ColorNames::customGray, Qt::gray);
    fill.setAlphaF(0.25f);
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill);
    painter->drawRoundedRect(pill, pillHeight / 2.0, pillHeight / 2.0);
    painter->setFont(font);
    painter->setPen(NamedColors::color(ColorNames::secondaryLabelText, Qt::darkGray));
    painter->drawText(pill, Qt::AlignCenter, text);
    if ((option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_KeyboardFocusChange))
        paintFocusRing(painter, pill, pillHeight / 2.0);
}

void CommentTableViewCell::paintFocusRing(QPainter *painter, const QRectF &rect, qreal radius)
{
    // Keyboard focus only: a tap does not ring the row.
    painter->setPen(QPen(FocusRing::color(), FocusRing::width));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(rect.adjusted(-1, -1, 1, 1), radius + 1, radius + 1);
}

void CommentTableViewCell::paintComment(QPainter *painter, const QStyleOptionViewItem &option,
                                        const QModelIndex &index) const
{
    const Layout l = layout(option, index);
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;

    // The author's round icon with its shadow: the host's picture, or the initials.
    CardShadow::paintShadow(*painter, QRectF(l.avatar), avatarSide / 2.0,
                            CardShadow::imageShadowStyle(NamedColors::color(ColorNames::customGray, Qt::gray)));
    QPainterPath circle;
    circle.addEllipse(QRectF(l.avatar));
    const QImage icon = authorIcon(index.data(CommentThreadModel::AuthorIconRole).toString());
    if (!icon.isNull()) {
        painter->save();
        painter->setClipPath(circle);
        painter->drawImage(QRectF(l.avatar), icon);
        painter->restore();
    } else {
        painter->fillPath(circle, index.data(CommentThreadModel::InitialsColorRole).value<QColor>());
        painter->setFont(sized(option.font, 12, QFont::Normal));
        painter->setPen(Qt::white);
        painter->drawText(l.avatar, Qt::AlignCenter, index.data(CommentThreadModel::InitialsRole).toString());
    }

    CardShadow::paintCard(*painter, QRectF(l.card), cardRadius,
                          NamedColors::color(ColorNames::viewBackground, Qt::white));
    SyncMarkPainter::paint(*painter, l.card.adjusted(0, 6, -10, -6), Qt::AlignRight | Qt::AlignBottom,
                           index.data(CommentThreadModel::SyncMarkRole).value<SyncMark>(), option.font);

    painter->setFont(sized(option.font, 14, QFont::DemiBold));
    painter->setPen(NamedColors::color(ColorNames::labelText, Qt::black));
    painter->drawText(l.author, Qt::AlignLeft | Qt::AlignVCenter,
                      painter->fontMetrics().elidedText(index.data(CommentThreadModel::AuthorRole).toString(),
                                                        Qt::ElideRight, l.author.width()));
    if (index.data(CommentThreadModel::ShowsTimeRole).toBool()) {
        painter->setFont(sized(option.font, 12, QFont::Normal));
        painter->setPen(NamedColors::color(ColorNames::secondaryLabelText, Qt::darkGray));
        painter->drawText(l.time, Qt::AlignRight | Qt::AlignVCenter,
                          index.data(CommentThreadModel::TimeTextRole).toString());
    }

    // The details: one line per fragment, its icon first.
    const QList<DetailFragment> fragments = fragmentsOf(index);
    if (!fragments.isEmpty()) {
        const QFont font = sized(option.font, 12, QFont::Normal);
        painter->setFont(font);
        const QFontMetrics metrics(font);
        const int lineHeight = l.details.height() / int(fragments.size());
        const QRectF bounds = detailIconBounds();
        int y = l.details.top();
        for (const DetailFragment &fragment : fragments) {
            const int baseline = y + (lineHeight + metrics.ascent() - metrics.descent()) / 2;
            const QRectF iconRect(l.details.left() + bounds.left(), baseline - bounds.top() - bounds.height(),
                                  bounds.width(), bounds.height());
            painter->drawImage(iconRect, detailIcon(fragment, ratio));
            const int textLeft = int(iconRect.right()) + 5;
            painter->setPen(fragmentColor(fragment));
            painter->drawText(
                QPoint(textLeft, baseline),
                metrics.elidedText(fragment.text.trimmed(), Qt::ElideRight, l.details.right() - textLeft));
            y += lineHeight;
        }
    }

    painter->setFont(sized(option.font, 15, QFont::Normal));
    painter->setPen(NamedColors::color(ColorNames::labelText, Qt::black));
    painter->drawText(l.text, Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignTop, index.data().toString());

    if (!l.picture.isEmpty()) {
        const QImage thumbnail = index.data(CommentThreadModel::ThumbnailRole).value<QImage>();
        if (thumbnail.isNull()) {
            // On its way (or not to be had): a quiet placeholder fills the box.
            QPainterPath rounded;
            rounded.addRoundedRect(QRectF(l.picture), 10, 10);
            QColor fill = NamedColors::color(ColorNames::customGray, Qt::gray);
            fill.setAlphaF(index.data(CommentThreadModel::PictureFailedRole).toBool() ? 0.1f : 0.18f);
            painter->fillPath(rounded, fill);
            const QRect glyph(l.picture.center() - QPoint(14, 14), QSize(28, 28));
            painter->drawPixmap(glyph,
                                NamedImages::pixmap(ImageNames::camera, glyph.size(),
                                                    NamedColors::color(ColorNames::customGray, Qt::gray), ratio));
        } else {
            // The picture at its own proportions, in the box's top left corner.
            const QSize fitted = thumbnail.size().scaled(l.picture.size(), Qt::KeepAspectRatio);
            const QRectF shown(l.picture.topLeft(), fitted);
            QPainterPath rounded;
            rounded.addRoundedRect(shown, 10, 10);
            painter->save();
            painter->setClipPath(rounded);
            painter->drawImage(shown, thumbnail);
            painter->restore();
        }
    }
    if ((option.state & QStyle::State_HasFocus) && (option.state & QStyle::State_KeyboardFocusChange))
        paintFocusRing(painter, QRectF(l.card), cardRadius);
}

} // namespace ravelin
