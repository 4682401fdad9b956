#pragma once

#include "views/viewgeometry.h"

#include <QColor>
#include <QWidget>

namespace ravelin {

// A list cell drawn as a card: its content view sits inside the cell with a
// 2-pixel gap on every side and carries the two-layer card shadow. The cell is
// never lower than minHeight. Subclasses put their widgets (and a layout) on
// contentView().
class ReusableShadowTableViewCell : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(qreal minHeight READ minHeight WRITE setMinHeight NOTIFY appearanceChanged)
    Q_PROPERTY(qreal cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY appearanceChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY appearanceChanged)

public:
    explicit ReusableShadowTableViewCell(QWidget *parent = nullptr);

    [[nodiscard]] qreal minHeight() const { return m_minHeight; }
    void setMinHeight(qreal height);

    [[nodiscard]] qreal cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(qreal radius);

    [[nodiscard]] QColor color() const { return m_color; }
    void setColor(const QColor &color);

    [[nodiscard]] QWidget *contentView() const { return m_contentView; }

    // The card's frame inside the cell (where the content view is put on layout).
    [[nodiscard]] QRect cardFrame() const;

    // The height the cell takes at the given width: what its content lays out
    // to (or its current height when the content has no layout), but at least
    // minHeight.
    [[nodiscard]] int fittedHeight(int width) const;
    [[nodiscard]] int fittedHeight() const { return fittedHeight(width()); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

    // Lays the card out again and renews its shadow; for a cell that is given
    // new content.
    virtual void prepareForReuse();

signals:
    void appearanceChanged();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

    // Places the content view on the card frame and applies the card shadow.
    void layoutCard();

private:
    QWidget *m_contentView = nullptr;
    qreal m_minHeight = ViewGeometry::defaultCellMinHeight;
    qreal m_cornerRadius = ViewGeometry::defaultCellCornerRadius;
    QColor m_color;
};

} // namespace ravelin
