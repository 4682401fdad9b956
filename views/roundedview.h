#pragma once

#include "views/viewgeometry.h"

#include <QColor>
#include <QWidget>

class QGraphicsDropShadowEffect;

namespace ravelin {

// A card with rounded corners, an optional border and a soft shadow. Its
// background colour is painted as the rounded fill: setting the background
// (setBackgroundColor, or a palette with a window colour) stores the colour as
// customBackgroundColor and leaves the widget's own background clear.
class RoundedView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(qreal cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY appearanceChanged)
    Q_PROPERTY(QColor shadowColor READ shadowColor WRITE setShadowColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor borderColor READ borderColor WRITE setBorderColor NOTIFY appearanceChanged)
    Q_PROPERTY(qreal borderWidth READ borderWidth WRITE setBorderWidth NOTIFY appearanceChanged)
    Q_PROPERTY(
        QColor customBackgroundColor READ customBackgroundColor WRITE setCustomBackgroundColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor backgroundColor READ backgroundColor WRITE setBackgroundColor NOTIFY appearanceChanged)

public:
    static constexpr qreal shadowRadius = 2.0;
    static constexpr qreal shadowOpacity = 0.2;

    explicit RoundedView(QWidget *parent = nullptr);

    [[nodiscard]] qreal cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(qreal radius);

    [[nodiscard]] QColor shadowColor() const { return m_shadowColor; }
    void setShadowColor(const QColor &color);

    [[nodiscard]] QColor borderColor() const { return m_borderColor; }
    void setBorderColor(const QColor &color);

    [[nodiscard]] qreal borderWidth() const { return m_borderWidth; }
    void setBorderWidth(qreal width);

    [[nodiscard]] QColor customBackgroundColor() const { return m_customBackgroundColor; }
    void setCustomBackgroundColor(const QColor &color);

    // The widget's own background: always clear.
    [[nodiscard]] QColor backgroundColor() const;
    // Stores the colour as customBackgroundColor.
    void setBackgroundColor(const QColor &color);

    // Where the border is stroked for the current size.
    [[nodiscard]] RoundedBorder borderGeometry() const;

signals:
    void appearanceChanged();

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void updateShadow();
    void clearOwnBackground();

    qreal m_cornerRadius = 0;
    QColor m_shadowColor;
    QColor m_borderColor = Qt::black;
    qreal m_borderWidth = 0;
    QColor m_customBackgroundColor = Qt::white;
    QGraphicsDropShadowEffect *m_shadow = nullptr;
    bool m_clearingBackground = false;
};

} // namespace ravelin
