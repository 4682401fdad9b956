#include "views/cardshadow.h"

#include "resources/namedcolors.h"

#include <QEvent>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPixmapCache>
#include <QPointer>
#include <QWidget>

#include <cmath>
#include <optional>
#include <vector>

namespace ravelin {

namespace {

const char *const targetProperty = "ravelinShadowTarget";

// One horizontal and one vertical box-blur pass over an 8-bit alpha image.
void boxBlur(QImage &alpha, int radius)
{
    if (radius <= 0)
        return;
    const int width = alpha.width();
    const int height = alpha.height();
    const int window = 2 * radius + 1;
    std::vector<int> line(static_cast<size_t>(std::max(width, height)));

    for (int y = 0; y < height; ++y) {
        uchar *row = alpha.scanLine(y);
        for (int x = 0; x < width; ++x)
            line[static_cast<size_t>(x)] = row[x];
        int sum = 0;
        for (int x = -radius; x <= radius; ++x)
            sum += (x >= 0 && x < width) ? line[static_cast<size_t>(x)] : 0;
        for (int x = 0; x < width; ++x) {
            row[x] = static_cast<uchar>(sum / window);
            const int leaving = x - radius;
            const int entering = x + radius + 1;
            sum -= (leaving >= 0) ? line[static_cast<size_t>(leaving)] : 0;
            sum += (entering < width) ? line[static_cast<size_t>(entering)] : 0;
        }
    }
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y)
            line[static_cast<size_t>(y)] = alpha.scanLine(y)[x];
        int sum = 0;
        for (int y = -radius; y <= radius; ++y)
            sum += (y >= 0 && y < height) ? line[static_cast<size_t>(y)] : 0;
        for (int y = 0; y < height; ++y) {
            alpha.scanLine(y)[x] = static_cast<uchar>(sum / window);
            const int leaving = y - radius;
            const int entering = y + radius + 1;
            sum -= (leaving >= 0) ? line[static_cast<size_t>(leaving)] : 0;
            sum += (entering < height) ? line[static_cast<size_t>(entering)] : 0;
        }
    }
}

// A shadow (and optionally the card fill) painted right under a view, in the
// view's parent, kept on the view's geometry.
class ShadowLayer : public QWidget
{
public:
    ShadowLayer(QWidget *target, const QString &name, ShadowStyle style, qreal cornerRadius, std::optional<QColor> fill)
        : QWidget(target->parentWidget())
        , m_target(target)
        , m_style(style)
        , m_cornerRadius(cornerRadius)
        , m_fill(fill)
    {
        setObjectName(name);
        setProperty(targetProperty, QVariant::fromValue(static_cast<QObject *>(target)));
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        target->installEventFilter(this);
        connect(target, &QObject::destroyed, this, &QObject::deleteLater);
        follow();
    }

    ~ShadowLayer() override
    {
        if (m_target)
            m_target->removeEventFilter(this);
    }

    [[nodiscard]] qreal margin() const { return std::ceil(CardShadow::reach(m_style)); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == m_target) {
            switch (event->type()) {
            case QEvent::Move:
            case QEvent::Resize:
            case QEvent::Show:
            case QEvent::Hide:
            case QEvent::ZOrderChange: follow(); break;
            default: break;
            }
        }
        return QWidget::eventFilter(watched, event);
    }

    void paintEvent(QPaintEvent *) override
    {
        if (!m_target)
            return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF shape(QPointF(margin(), margin()), QSizeF(m_target->size()));
        CardShadow::paintShadow(painter, shape, m_cornerRadius, m_style);
        if (m_fill) {
            QPainterPath path;
            path.addRoundedRect(shape, m_cornerRadius, m_cornerRadius);
            painter.fillPath(path, *m_fill);
        }
    }

private:
    void follow()
    {
        if (!m_target)
            return;
        const int m = static_cast<int>(margin());
        setGeometry(m_target->geometry().adjusted(-m, -m, m, m));
        setVisible(!m_target->isHidden());
        stackUnder(m_target);
    }

    QPointer<QWidget> m_target;
    ShadowStyle m_style;
    qreal m_cornerRadius = 0;
    std::optional<QColor> m_fill;
};

void removeLayers(QWidget *view, const QStringList &names)
{
    QWidget *parent = view->parentWidget();
    if (parent == nullptr)
        return;
    const auto layers = parent->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (QWidget *layer : layers) {
        if (!names.contains(layer->objectName()))
            continue;
        if (layer->property(targetProperty).value<QObject *>() != view)
            continue;
        delete layer;
    }
}

} // namespace

void CardShadow::applyCardShadow(QWidget *view, qreal cornerRadius, const QColor &color)
{
    if (view == nullptr)
        return;
    removeLayers(view, {darkShadowName, lightShadowName});
    if (view->parentWidget() == nullptr)
        return;
    view->setAutoFillBackground(false);
    // Created dark first, then light, each placed under what is already there:
    // light at the bottom, dark above it, the view on top.
    auto *dark = new ShadowLayer(view, darkShadowName, darkShadowStyle(), cornerRadius, color);
    auto *light = new ShadowLayer(view, lightShadowName, lightShadowStyle(), cornerRadius, std::nullopt);
    light->stackUnder(dark);
}

void CardShadow::applyImageShadow(QWidget *view, qreal cornerRadius, const QColor &shadowColor)
{
    if (view == nullptr)
        return;
    removeLayers(view, {imageShadowName});
    if (view->parentWidget() == nullptr)
        return;
    new ShadowLayer(view, imageShadowName, imageShadowStyle(shadowColor), cornerRadius, std::nullopt);
}

void CardShadow::removeShadows(QWidget *view)
{
    if (view != nullptr)
        removeLayers(view, {darkShadowName, lightShadowName, imageShadowName});
}

ShadowStyle CardShadow::darkShadowStyle()
{
    return {QColor(Qt::lightGray), QPointF(1, 1), 0.3, 1.0};
}

ShadowStyle CardShadow::lightShadowStyle()
{
    return {NamedColors::color(ColorNames::customShadow, QColor(Qt::white)), QPointF(-1, -1), 1.0, 1.0};
}

ShadowStyle CardShadow::imageShadowStyle(const QColor &color)
{
    return {color, QPointF(2, 2), 0.5, 2.0};
}

qreal CardShadow::reach(const ShadowStyle &style)
{
    return std::max(std::abs(style.offset.x()), std::abs(style.offset.y())) + 2.0 * style.radius;
}

void CardShadow::paintShadow(QPainter &painter, const QRectF &shape, qreal cornerRadius, const ShadowStyle &style)
{
    if (shape.isEmpty() || style.opacity <= 0 || style.color.alpha() == 0)
        return;
    // The blur spreads over twice the radius; the mask leaves room for it.
    const int blur = static_cast<int>(std::ceil(style.radius));
    const int pad = 2 * blur + 1;
    const qreal ratio = painter.device() != nullptr ? painter.device()->devicePixelRatioF() : 1.0;
    const QSize logical(static_cast<int>(std::ceil(shape.width())) + 2 * pad,
                        static_cast<int>(std::ceil(shape.height())) + 2 * pad);

    QImage mask((QSizeF(logical) * ratio).toSize(), QImage::Format_Alpha8);
    mask.fill(0);
    mask.setDevicePixelRatio(ratio);
    {
        QPainter maskPainter(&mask);
        maskPainter.setRenderHint(QPainter::Antialiasing);
        QPainterPath path;
        path.addRoundedRect(QRectF(QPointF(pad, pad), shape.size()), cornerRadius, cornerRadius);
        maskPainter.fillPath(path, Qt::black);
    }
    const int pixelBlur = static_cast<int>(std::lround(blur * ratio));
    boxBlur(mask, pixelBlur);
    boxBlur(mask, pixelBlur);

    QImage shadow(mask.size(), QImage::Format_ARGB32_Premultiplied);
    shadow.setDevicePixelRatio(ratio);
    shadow.fill(style.color);
    {
        QPainter tint(&shadow);
        tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        tint.drawImage(QPointF(0, 0), mask);
    }

    painter.save();
    painter.setOpacity(painter.opacity() * style.opacity);
    painter.drawImage(shape.topLeft() + style.offset - QPointF(pad, pad), shadow);
    painter.restore();
}

void CardShadow::paintCard(QPainter &painter, const QRectF &frame, qreal cornerRadius, const QColor &color)
{
    // Cards of one size look alike: drawn once (shadows and fill) and then copied.
    const qreal ratio = painter.device() != nullptr ? painter.device()->devicePixelRatioF() : 1.0;
    const ShadowStyle light = lightShadowStyle();
    const ShadowStyle dark = darkShadowStyle();
    const qreal margin = std::ceil(std::max(reach(light), reach(dark)) + 1);
    const QSizeF size(frame.width() + 2 * margin, frame.height() + 2 * margin);
    const QString key = QStringLiteral("ravelin-card-%1x%2-%3-%4-%5-%6")
                            .arg(frame.width())
                            .arg(frame.height())
                            .arg(cornerRadius)
                            .arg(color.rgba(), 0, 16)
                            .arg(light.color.rgba(), 0, 16)
                            .arg(ratio);
    QPixmap card;
    if (!QPixmapCache::find(key, &card)) {
        card = QPixmap((size * ratio).toSize());
        card.setDevicePixelRatio(ratio);
        card.fill(Qt::transparent);
        QPainter cardPainter(&card);
        cardPainter.setRenderHint(QPainter::Antialiasing);
        const QRectF shape(QPointF(margin, margin), frame.size());
        paintShadow(cardPainter, shape, cornerRadius, light);
        paintShadow(cardPainter, shape, cornerRadius, dark);
        QPainterPath path;
        path.addRoundedRect(shape, cornerRadius, cornerRadius);
        cardPainter.fillPath(path, color);
        cardPainter.end();
        QPixmapCache::insert(key, card);
    }
    painter.drawPixmap(frame.topLeft() - QPointF(margin, margin), card);
}

} // namespace ravelin
