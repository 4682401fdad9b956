#include "host/defaultimagepicker.h"

#include "resources/namedcolors.h"
#include "views/focuschain.h"
#include "views/focusring.h"

#include <QCamera>
#include <QCoreApplication>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QImageCapture>
#include <QImageReader>
#include <QKeyEvent>
#include <QMediaCaptureSession>
#include <QMediaDevices>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <QVideoFrame>
#include <QVideoSink>

#include <memory>

namespace ravelin {

namespace {

// Shows the camera's picture filling the widget (cropped, never stretched).
class Viewfinder : public QWidget
{
public:
    explicit Viewfinder(QWidget *parent)
        : QWidget(parent)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setMinimumSize(200, 260);
    }

    void setFrame(const QImage &frame)
    {
        m_frame = frame;
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::black);
        if (m_frame.isNull())
            return;
        const QSizeF scaled = QSizeF(m_frame.size()).scaled(size(), Qt::KeepAspectRatioByExpanding);
        const QRectF target(QPointF((width() - scaled.width()) / 2, (height() - scaled.height()) / 2), scaled);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(target, m_frame);
    }

private:
    QImage m_frame;
};

// A sheet over the presenter: live camera picture, shutter, "Choose File…" and "Cancel".
class CameraSheet : public QWidget
{
public:
    CameraSheet(QWidget *presenter, ImagePicker::Completion completion)
        : QWidget(presenter->window())
        , m_presenter(presenter)
        , m_completion(std::move(completion))
    {
        setObjectName(QStringLiteral("cameraSheet"));
        setAttribute(Qt::WA_DeleteOnClose);
        setAutoFillBackground(true);
        QPalette palette = this->palette();
        palette.setColor(QPalette::Window, Qt::black);
        setPalette(palette);
        setGeometry(parentWidget()->rect());

        auto *column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 16);
        m_viewfinder = new Viewfinder(this);
        column->addWidget(m_viewfinder, 1);

        auto *buttons = new QHBoxLayout;
        buttons->setContentsMargins(16, 12, 16, 0);
        const QString style = QStringLiteral("QPushButton { color: white; background: transparent;"
                                             " border: 2px solid transparent; border-radius: 10px;"
                                             " font-size: 16px; padding: 6px; }"
                                             "QPushButton:focus { border-color: white; }");
        auto *cancel = new QPushButton(QCoreApplication::translate("DefaultImagePicker", "Cancel"), this);
        cancel->setStyleSheet(style);
        auto *shutter = new QPushButton(this);
        shutter->setObjectName(QStringLiteral("shutterButton"));
        shutter->setAccessibleName(QCoreApplication::translate("DefaultImagePicker", "Take Photo"));
        shutter->setFixedSize(68, 68);
        shutter->setStyleSheet(QStringLiteral("QPushButton { background: white; border: 5px solid #9aa4b0;"
                                              " border-radius: 34px; } QPushButton:pressed { background: #dde1e6; }"
                                              "QPushButton:focus { border-color: %1; }")
                                   .arg(FocusRing::color().name()));
        auto *file = new QPushButton(QCoreApplication::translate("DefaultImagePicker", "Choose File…"), this);
        file->setStyleSheet(style);
        buttons->addWidget(cancel);
        buttons->addStretch(1);
        buttons->addWidget(shutter);
        buttons->addStretch(1);
        buttons->addWidget(file);
        column->addLayout(buttons);

        m_camera = std::make_unique<QCamera>(QMediaDevices::defaultVideoInput());
        m_capture = std::make_unique<QImageCapture>();
        m_sink = std::make_unique<QVideoSink>();
        m_session.setCamera(m_camera.get());
        m_session.setImageCapture(m_capture.get());
        m_session.setVideoSink(m_sink.get());
        QObject::connect(m_sink.get(), &QVideoSink::videoFrameChanged, this,
                         [this](const QVideoFrame &frame) { m_viewfinder->setFrame(frame.toImage()); });
        QObject::connect(m_capture.get(), &QImageCapture::imageCaptured, this,
                         [this](int, const QImage &picture) { finish(picture); });
        QObject::connect(cancel, &QPushButton::clicked, this, [this] { finish(std::nullopt); });
        QObject::connect(shutter, &QPushButton::clicked, this, [this] {
            if (m_capture->isReadyForCapture())
                m_capture->capture();
        });
        QObject::connect(file, &QPushButton::clicked, this, [this] {
            ImagePicker::Completion completion = std::exchange(m_completion, {});
            QWidget *presenter = m_presenter;
            close();
            if (presenter && completion)
                DefaultImagePicker::chooseFile(presenter, std::move(completion));
        });
        for (QPushButton *button : {cancel, shutter, file})
            button->setFocusPolicy(Qt::TabFocus);
        setAccessibleName(QCoreApplication::translate("DefaultImagePicker", "Camera"));
        m_camera->start();
        show();
        raise();
        // From the keyboard: Tab goes round the buttons, Enter presses the
        // focused one, Escape cancels.
        setFocus(Qt::OtherFocusReason);
    }

    ~CameraSheet() override
    {
        m_camera->stop();
        if (m_completion && m_presenter)
            m_completion(std::nullopt);
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (FocusChain::clickFocusedButton(this, event))
            return;
        if (event->key() == Qt::Key_Escape) {
            finish(std::nullopt);
            return;
        }
        // Nothing reaches the screen under the sheet.
        event->accept();
    }

    bool focusNextPrevChild(bool next) override
    {
        FocusChain::moveWithin(this, next);
        return true;
    }

private:
    void finish(std::optional<QImage> picture)
    {
        ImagePicker::Completion completion = std::exchange(m_completion, {});
        const QPointer<QWidget> presenter = m_presenter;
        close();
        if (completion && presenter)
            completion(std::move(picture));
    }

    QPointer<QWidget> m_presenter;
    ImagePicker::Completion m_completion;
    Viewfinder *m_viewfinder = nullptr;
    QMediaCaptureSession m_session;
    std::unique_ptr<QCamera> m_camera;
    std::unique_ptr<QImageCapture> m_capture;
    std::unique_ptr<QVideoSink> m_sink;
};

// The file dialog over the presenter; the completion runs once with the
// pictures read from the chosen files (none when cancelled), unless the
// presenter is gone by then.
void openFileDialog(QWidget *presenter, QFileDialog::FileMode mode, ImagePicker::PicturesCompletion completion)
{
    auto *dialog = new QFileDialog(presenter, QCoreApplication::translate("DefaultImagePicker", "Choose a Picture"),
                                   QStandardPaths::writableLocation(QStandardPaths::PicturesLocation),
                                   DefaultImagePicker::imageFilter());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(mode);
    auto shared = std::make_shared<ImagePicker::PicturesCompletion>(std::move(completion));
    const QPointer<QWidget> guard(presenter);
    QObject::connect(dialog, &QFileDialog::filesSelected, presenter, [shared, guard](const QStringList &paths) {
        if (!guard || !*shared)
            return;
        QList<QImage> pictures;
        for (const QString &path : paths) {
            QImage picture(path);
            if (!picture.isNull())
                pictures.append(picture);
        }
        std::exchange(*shared, {})(pictures);
    });
    QObject::connect(dialog, &QFileDialog::rejected, presenter, [shared, guard] {
        if (guard && *shared)
            std::exchange(*shared, {})({});
    });
    dialog->open();
}

} // namespace

void DefaultImagePicker::pickImages(QWidget *presenter, PicturesCompletion completion)
{
    if (!presenter)
        return;
    if (QMediaDevices::videoInputs().isEmpty()) {
        chooseFiles(presenter, std::move(completion));
        return;
    }
    ImagePicker::pickImages(presenter, std::move(completion));
}

void DefaultImagePicker::pickImage(QWidget *presenter, Completion completion)
{
    if (!presenter)
        return;
    if (QMediaDevices::videoInputs().isEmpty()) {
        chooseFile(presenter, std::move(completion));
        return;
    }
    new CameraSheet(presenter, std::move(completion));
}

QString DefaultImagePicker::imageFilter()
{
    QStringList patterns;
    for (const QByteArray &format : QImageReader::supportedImageFormats())
        patterns.append(QStringLiteral("*.") + QString::fromLatin1(format));
    return QCoreApplication::translate("DefaultImagePicker", "Images (%1)").arg(patterns.join(QLatin1Char(' ')));
}

void DefaultImagePicker::chooseFile(QWidget *presenter, Completion completion)
{
    openFileDialog(presenter, QFileDialog::ExistingFile,
                   [completion = std::move(completion)](const QList<QImage> &pictures) {
                       completion(pictures.isEmpty() ? std::nullopt : std::optional<QImage>(pictures.first()));
                   });
}

void DefaultImagePicker::chooseFiles(QWidget *presenter, PicturesCompletion completion)
{
    openFileDialog(presenter, QFileDialog::ExistingFiles, std::move(completion));
}

} // namespace ravelin
