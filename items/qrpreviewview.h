#pragma once

#include <QImage>
#include <QWidget>

namespace ravelin {

// The live camera picture of the QR scanner, scaled to cover the whole view
// (centred, the overhang cut off), as a camera preview fills a phone screen.
class QrPreviewView : public QWidget
{
    Q_OBJECT

public:
    explicit QrPreviewView(QWidget *parent = nullptr);

    void setFrame(const QImage &frame);
    // Back to the empty (black) preview.
    void clear();
    [[nodiscard]] const QImage &frame() const { return m_frame; }
    // Where a rectangle of the current frame shows in this view.
    [[nodiscard]] QRect mapFromFrame(const QRectF &inFrame, const QSize &frameSize) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_frame;
};

} // namespace ravelin
