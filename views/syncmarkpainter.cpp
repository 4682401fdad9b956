#include "views/syncmarkpainter.h"

#include "host/synctexts.h"
#include "views/textscale.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

namespace ravelin::SyncMarkPainter {

namespace {

QFont markFont(const QFont &font)
{
    return TextScale::font(font, 10, QFont::DemiBold);
}

} // namespace

QSize size(SyncMark mark, const QFont &font)
{
    if (mark == SyncMark::none)
        return {};
    const QFontMetrics metrics(markFont(font));
    return {metrics.horizontalAdvance(SyncTexts::markText(mark)) + 2 * metrics.height() / 2 + 4, metrics.height() + 4};
}

QRect paint(QPainter &painter, const QRect &bounds, Qt::Alignment corner, SyncMark mark, const QFont &font)
{
    if (mark == SyncMark::none)
        return {};
    const QRect pill = QStyle::alignedRect(Qt::LeftToRight, corner, size(mark, font), bounds);
    const QColor tone = mark == SyncMark::notSent ? QColor(0xc6, 0x28, 0x28) : QColor(0xa1, 0x62, 0x07);
    QColor fill = tone;
    fill.setAlphaF(0.16f);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(tone, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(pill).adjusted(0.5, 0.5, -0.5, -0.5), pill.height() / 2.0, pill.height() / 2.0);
    painter.setFont(markFont(font));
    painter.drawText(pill, Qt::AlignCenter, SyncTexts::markText(mark));
    painter.restore();
    return pill;
}

} // namespace ravelin::SyncMarkPainter
