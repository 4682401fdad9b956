#include "resources/namedimages.h"

#include <QDir>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <memory>

namespace ravelin {

namespace {

constexpr QLatin1StringView resourceDirectory(":/ravelin/images/");

QString baseName(const QString &name)
{
    static const QStringList extensions{QStringLiteral(".png"), QStringLiteral(".svg"), QStringLiteral(".pdf"),
                                        QStringLiteral(".jpg")};
    for (const QString &extension : extensions) {
        if (name.endsWith(extension, Qt::CaseInsensitive))
            return name.chopped(extension.size());
    }
    return name;
}

QString pathFor(const QString &name)
{
    const QString base = baseName(name);
    if (base.isEmpty() || base.contains(QLatin1Char('/')))
        return {};
    const QString path = resourceDirectory + base + QStringLiteral(".svg");
    return QFile::exists(path) ? path : QString();
}

QImage render(const QString &path, QSize size, qreal devicePixelRatio)
{
    QSvgRenderer renderer(path);
    if (!renderer.isValid())
        return {};
    if (!size.isValid() || size.isEmpty())
        size = renderer.defaultSize();
    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return {};
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(image.size())));
    }
    image.setDevicePixelRatio(ratio);
    return image;
}

// Renders the vector image at exactly the pixel size Qt asks for, optionally as
// a template in one colour.
class NamedIconEngine : public QIconEngine
{
public:
    NamedIconEngine(QString name, std::optional<QColor> color)
        : m_name(std::move(name))
        , m_color(color)
    { }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device() != nullptr ? painter->device()->devicePixelRatioF() : 1.0;
        painter->drawPixmap(rect, rendered(rect.size(), mode, state, ratio));
    }

    // size is in device pixels here.
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return rendered(size, mode, state, 1.0);
    }

    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override { return size; }

    QIconEngine *clone() const override { return new NamedIconEngine(m_name, m_color); }

    QString key() const override { return QStringLiteral("ravelin-named"); }

    bool isNull() override { return !NamedImages::contains(m_name); }

    QString iconName() override { return baseName(m_name); }

private:
    QPixmap rendered(const QSize &size, QIcon::Mode mode, QIcon::State, qreal scale) const
    {
        QImage image
            = m_color ? NamedImages::image(m_name, size, *m_color, scale) : NamedImages::image(m_name, size, scale);
        if (image.isNull())
            return {};
        if (mode == QIcon::Disabled) {
            QImage faded(image.size(), QImage::Format_ARGB32_Premultiplied);
            faded.fill(Qt::transparent);
            faded.setDevicePixelRatio(image.devicePixelRatio());
            QPainter painter(&faded);
            painter.setOpacity(0.35);
            painter.drawImage(QPoint(0, 0), image);
            painter.end();
            image = faded;
        }
        return QPixmap::fromImage(image);
    }

    QString m_name;
    std::optional<QColor> m_color;
};

} // namespace

bool NamedImages::contains(const QString &name)
{
    return !pathFor(name).isEmpty();
}

QStringList NamedImages::names()
{
    QStringList names;
    const QStringList files = QDir(resourceDirectory).entryList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name);
    for (const QString &file : files)
        names.append(file.chopped(4));
    return names;
}

QSize NamedImages::defaultSize(const QString &name)
{
    const QString path = pathFor(name);
    if (path.isEmpty())
        return {};
    return QSvgRenderer(path).defaultSize();
}

QImage NamedImages::image(const QString &name, QSize size, qreal devicePixelRatio)
{
    const QString path = pathFor(name);
    if (path.isEmpty())
        return {};
    return render(path, size, devicePixelRatio);
}

QImage NamedImages::image(const QString &name, QSize size, const QColor &color, qreal devicePixelRatio)
{
    return filledWithColor(image(name, size, devicePixelRatio), color);
}

QPixmap NamedImages::pixmap(const QString &name, QSize size, qreal devicePixelRatio)
{
    const QImage rendered = image(name, size, devicePixelRatio);
    return rendered.isNull() ? QPixmap() : QPixmap::fromImage(rendered);
}

QPixmap NamedImages::pixmap(const QString &name, QSize size, const QColor &color, qreal devicePixelRatio)
{
    const QImage rendered = image(name, size, color, devicePixelRatio);
    return rendered.isNull() ? QPixmap() : QPixmap::fromImage(rendered);
}

QIcon NamedImages::icon(const QString &name, const std::optional<QColor> &color)
{
    if (!contains(name))
        return {};
    return QIcon(new NamedIconEngine(name, color));
}

QImage NamedImages::filledWithColor(const QImage &image, const QColor &color)
{
    if (image.isNull())
        return {};
    QImage filled = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&filled);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRect(QPoint(0, 0), filled.size()), color);
    painter.end();
    filled.setDevicePixelRatio(image.devicePixelRatio());
    return filled;
}

} // namespace ravelin
