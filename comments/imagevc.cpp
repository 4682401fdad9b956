#include "comments/imagevc.h"

#include "resources/namedimages.h"

#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

namespace ravelin {

namespace {

// The picture, whole and as large as it fits.
class PictureView : public QWidget
{
public:
    explicit PictureView(QWidget *parent)
        : QWidget(parent)
    { }

    void setImage(const QImage &image)
    {
        m_image = image;
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        if (m_image.isNull())
            return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        const QSizeF fitted = QSizeF(m_image.size()).scaled(size(), Qt::KeepAspectRatio);
        painter.drawImage(QRectF(QPointF((width() - fitted.width()) / 2, (height() - fitted.height()) / 2), fitted),
                          m_image);
    }

private:
    QImage m_image;
};

} // namespace

ImageVC::ImageVC(QWidget *parent)
    : Screen(parent)
{
    setObjectName(QStringLiteral("ImageVC"));
    setAutoFillBackground(true);
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, Qt::black);
    setPalette(palette);
    setTitle(tr("Picture"));

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    auto *top = new QHBoxLayout;
    top->setContentsMargins(8, 8, 8, 0);
    m_closeButton = new QToolButton(this);
    m_closeButton->setObjectName(QStringLiteral("closeButton"));
    m_closeButton->setAccessibleName(tr("Close"));
    m_closeButton->setStyleSheet(QStringLiteral("QToolButton { border: 2px solid transparent; border-radius: 10px; }"
                                                "QToolButton:focus { border-color: white; }"));
    m_closeButton->setIcon(NamedImages::icon(ImageNames::close, QColor(Qt::white)));
    m_closeButton->setIconSize(QSize(22, 22));
    m_closeButton->setFixedSize(44, 44);
    m_closeButton->setAutoRaise(true);
    m_closeButton->setCursor(Qt::PointingHandCursor);
    connect(m_closeButton, &QToolButton::clicked, this, &ImageVC::didPressClose);
    top->addWidget(m_closeButton);
    top->addStretch(1);
    column->addLayout(top);
    m_imageView = new PictureView(this);
    m_imageView->setObjectName(QStringLiteral("showCommentImg"));
    m_imageView->setAccessibleName(tr("Comment picture"));
    column->addWidget(m_imageView, 1);
}

void ImageVC::setImage(const QImage &image)
{
    m_image = image;
}

void ImageVC::viewDidLoad()
{
    Screen::viewDidLoad();
    static_cast<PictureView *>(m_imageView)->setImage(m_image);
}

void ImageVC::didPressClose()
{
    dismiss();
}

} // namespace ravelin
