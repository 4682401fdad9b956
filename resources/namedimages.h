#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace ravelin {

// Names of the framework's image assets.
namespace ImageNames {
inline const QString ok = QStringLiteral("ok");
inline const QString nok = QStringLiteral("nok");
inline const QString open = QStringLiteral("open");
inline const QString paperplane = QStringLiteral("paperplane");
inline const QString paperclip = QStringLiteral("paperclip");
inline const QString qrCode = QStringLiteral("CustomQRCode");
inline const QString defaultPeoplePin = QStringLiteral("list_pin_people_01");
inline const QString filter = QStringLiteral("filter");
inline const QString refresh = QStringLiteral("refresh");
inline const QString back = QStringLiteral("back");
inline const QString comments = QStringLiteral("comments");
inline const QString qrScan = QStringLiteral("qrscan");
inline const QString camera = QStringLiteral("camera");
inline const QString close = QStringLiteral("close");
inline const QString multiselect = QStringLiteral("multiselect");
inline const QString block = QStringLiteral("block");
} // namespace ImageNames

// The framework's image assets, drawn as vector images and rendered at the size
// asked for. A name may carry a file extension ("list_pin_people_01.png" finds
// "list_pin_people_01"). Unknown names give a null image, pixmap or icon.
class NamedImages
{
public:
    [[nodiscard]] static bool contains(const QString &name);
    [[nodiscard]] static QStringList names();

    // The image's own size in device-independent pixels; invalid when unknown.
    [[nodiscard]] static QSize defaultSize(const QString &name);

    // Rendered at size (the default size when invalid) times the pixel ratio.
    [[nodiscard]] static QImage image(const QString &name, QSize size = {}, qreal devicePixelRatio = 1.0);
    // The same, with the image's opaque shape filled with the colour.
    [[nodiscard]] static QImage image(const QString &name, QSize size, const QColor &color,
                                      qreal devicePixelRatio = 1.0);

    [[nodiscard]] static QPixmap pixmap(const QString &name, QSize size, qreal devicePixelRatio = 1.0);
    [[nodiscard]] static QPixmap pixmap(const QString &name, QSize size, const QColor &color,
                                        qreal devicePixelRatio = 1.0);

    // An icon that renders sharply at every size; with a colour it is drawn as a
    // template image in that colour (disabled icons fade).
    [[nodiscard]] static QIcon icon(const QString &name, const std::optional<QColor> &color = std::nullopt);

    // Fills the opaque shape of the image with the colour: every pixel keeps its
    // coverage (alpha) and takes the colour, whose own alpha scales the result.
    [[nodiscard]] static QImage filledWithColor(const QImage &image, const QColor &color);
};

} // namespace ravelin
