#include "demo/app/democamera.h"

#include "demo/common/qrsymbol.h"
#include "host/ravelinnavvc.h"
#include "items/itemsvc.h"
#include "items/itemsvm.h"

#include <QLinearGradient>
#include <QPainter>

#include <cmath>

namespace ravelin {

namespace {

// A white label with the code and a caption, as stuck on a pump or a door.
QImage makeSticker(const QString &code)
{
    const QImage symbol = QrSymbol::image(code, 7);
    if (symbol.isNull())
        return {};
    QImage sticker(symbol.width() + 24, symbol.height() + 58, QImage::Format_RGB32);
    sticker.fill(QColor(250, 250, 246));
    QPainter painter(&sticker);
    painter.drawImage(12, 12, symbol);
    painter.setPen(QColor(40, 40, 40));
    QFont font = painter.font();
    font.setPixelSize(22);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(QRect(0, symbol.height() + 12, sticker.width(), 40), Qt::AlignCenter, code);
    return sticker;
}

} // namespace

DemoCamera::DemoCamera(CheckpointProvider checkpoint, QObject *parent)
    : CameraFrameSource(parent)
    , m_checkpoint(std::move(checkpoint))
{
    m_timer.setInterval(80);
    connect(&m_timer, &QTimer::timeout, this, [this] { emit frameArrived(frame(m_sticker, m_clock.elapsed())); });
}

QString DemoCamera::openCheckpoint(const RavelinNavVC *navVC)
{
    if (!navVC)
        return {};
    for (Screen *screen : navVC->screens()) {
        const auto *items = qobject_cast<ItemsVC *>(screen);
        if (!items || !items->viewModel() || !items->viewModel()->task())
            continue;
        for (const ItemPtr &item : items->viewModel()->task()->itemList.items) {
            if (item->status == ItemStatus::open && item->qrCode && !item->qrCode->isEmpty())
                return *item->qrCode;
        }
    }
    return {};
}

QImage DemoCamera::frame(const QImage &sticker, qint64 elapsedMs)
{
    QImage picture(frameSize, QImage::Format_RGB32);
    QPainter painter(&picture);
    // A painted concrete wall, lit from the top left.
    QLinearGradient wall(0, 0, frameSize.width(), frameSize.height());
    wall.setColorAt(0, QColor(176, 170, 158));
    wall.setColorAt(1, QColor(118, 114, 106));
    painter.fillRect(picture.rect(), wall);
    painter.setPen(QColor(100, 96, 90));
    for (int y = 120; y < frameSize.height(); y += 160)
        painter.drawLine(0, y, frameSize.width(), y);
    if (!sticker.isNull()) {
        // The hand holding the phone is not quite steady.
        const double t = double(elapsedMs) / 1000.0;
        const QPointF sway(9.0 * std::sin(t * 1.7), 6.0 * std::sin(t * 2.3 + 1.0));
        const QPointF at
            = QPointF((frameSize.width() - sticker.width()) / 2.0, (frameSize.height() - sticker.height()) / 2.0)
            + sway;
        painter.fillRect(QRectF(at + QPointF(5, 6), QSizeF(sticker.size())), QColor(0, 0, 0, 60));
        painter.drawImage(at, sticker);
    }
    return picture;
}

void DemoCamera::start()
{
    if (isRunning())
        return;
    const QString code = m_checkpoint ? m_checkpoint() : QString();
    m_sticker = code.isEmpty() ? QImage() : makeSticker(code);
    m_clock.start();
    m_timer.start();
}

void DemoCamera::stop()
{
    m_timer.stop();
}

} // namespace ravelin
