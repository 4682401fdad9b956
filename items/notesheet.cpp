#include "items/notesheet.h"

#include "host/imagepicker.h"
#include "host/notificationcenter.h"
#include "host/ravelinnavvc.h"
#include "resources/namedcolors.h"
#include "resources/namedimages.h"
#include "views/buttonrow.h"
#include "views/focusring.h"
#include "views/sheetbar.h"
#include "views/textscale.h"
#include "views/textviewwithplaceholder.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace ravelin {

namespace {

constexpr int thumbnailHeight = 140;

} // namespace

QLabel *NoteSheet::makeLabel(QWidget *parent, int pixelSize, QFont::Weight weight, const QColor &color,
                             const QString &name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setFont(TextScale::font(label->font(), pixelSize, weight));
    label->setWordWrap(true);
    label->setStyleSheet(QStringLiteral("color: %1;").arg(color.name()));
    return label;
}

NoteSheet::NoteSheet(const QString &title, QWidget *parent)
    : Screen(parent)
{
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, NamedColors::color(ColorNames::groupedBackground, QColor(0xF2, 0xF2, 0xF7)));
    setPalette(palette);
    setAutoFillBackground(true);
    setTitle(title);
    const QColor secondary = NamedColors::color(ColorNames::secondaryLabelText, Qt::darkGray);
    const QColor accent = NamedColors::color(ColorNames::accent, QColor(0, 122, 255));
    const QColor card = NamedColors::color(ColorNames::viewBackground, Qt::white);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_sheetBar = new SheetBar(title, this);
    connect(m_sheetBar, &SheetBar::cancelled, this, &NoteSheet::cancel);
    column->addWidget(m_sheetBar);

    m_scrollView = new QScrollArea(this);
    m_scrollView->setObjectName(QStringLiteral("scrollView"));
    m_scrollView->setWidgetResizable(true);
    m_scrollView->setFrameShape(QFrame::NoFrame);
    m_scrollView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Tab goes through the controls; the sheet scrolls along.
    m_scrollView->setFocusPolicy(Qt::NoFocus);
    m_scrollView->viewport()->setAutoFillBackground(false);
    m_scrollView->setStyleSheet(QStringLiteral(
        "QScrollArea { background: transparent; }"
        "QScrollBar:vertical { width: 6px; background: transparent; margin: 2px; }"
        "QScrollBar::handle:vertical { background: rgba(0,0,0,70); border-radius: 2px; min-height: 30px; }"
        "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
        "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }"));
    column->addWidget(m_scrollView, 1);

    auto *body = new QWidget;
    body->setAutoFillBackground(false);
    auto *bodyColumn = new QVBoxLayout(body);
    bodyColumn->setContentsMargins(16, 16, 16, 16);
    bodyColumn->setSpacing(10);
    m_headerColumn = new QVBoxLayout;
    m_headerColumn->setSpacing(6);
    bodyColumn->addLayout(m_headerColumn);

    m_notesLabel = makeLabel(body, 13, QFont::DemiBold, secondary, QStringLiteral("notesLabel"));
    m_notesLabel->setText(tr("NOTES"));
    bodyColumn->addSpacing(6);
    bodyColumn->addWidget(m_notesLabel);
    m_noteField = new TextViewWithPlaceholder(body);
    m_noteField->setObjectName(QStringLiteral("noteField"));
    m_noteField->setMinimumHeight(TextScale::scaled(110));
    m_noteField->setMaximumHeight(TextScale::scaled(180));
    // Tab leaves the note instead of writing a tab into it.
    m_noteField->setTabChangesFocus(true);
    m_noteField->setStyleSheet(QStringLiteral("QPlainTextEdit { background: %1; border: 1px solid %2;"
                                              " border-radius: 12px; padding: 8px; %4 }"
                                              "QPlainTextEdit:focus { border: 2px solid %3; }")
                                   .arg(card.name(), NamedColors::color(ColorNames::separator, Qt::lightGray).name(),
                                        FocusRing::color().name(), TextScale::styleSize(15)));
    m_notesLabel->setBuddy(m_noteField);
    m_noteField->installEventFilter(this);
    bodyColumn->addWidget(m_noteField);
    m_requiredLabel = makeLabel(body, 12, QFont::Normal, NamedColors::color(ColorNames::customRed, Qt::red),
                                QStringLiteral("requiredLabel"));
    bodyColumn->addWidget(m_requiredLabel);

    // The picture: a button to add one, or the picture with a button to clear it.
    m_addFileButton = new QPushButton(NamedImages::icon(ImageNames::camera, accent), tr("Add Photo"), body);
    m_addFileButton->setObjectName(QStringLiteral("addFileButton"));
    // Taps leave the focus where it is (on the note); Tab reaches the buttons.
    m_addFileButton->setFocusPolicy(Qt::TabFocus);
    m_addFileButton->setCursor(Qt::PointingHandCursor);
    m_addFileButton->setIconSize(QSize(20, 20));
    m_addFileButton->setMinimumHeight(TextScale::scaled(44));
    m_addFileButton->setStyleSheet(
        QStringLiteral("QPushButton { color: %1; background: %2; border: 1.5px dashed %1;"
                       " border-radius: 12px; %3 font-weight: 600; }"
                       "QPushButton:pressed { background: rgba(0,0,0,15); }"
                       "QPushButton:focus { border: 3px solid %4; }")
            .arg(accent.name(), card.name(), TextScale::styleSize(15), FocusRing::color().name()));
    connect(m_addFileButton, &QPushButton::clicked, this, &NoteSheet::addFile);
    bodyColumn->addWidget(m_addFileButton);

    m_attachmentView = new QWidget(body);
    m_attachmentView->setObjectName(QStringLiteral("attachmentView"));
    auto *attachment = new QHBoxLayout(m_attachmentView);
    attachment->setContentsMargins(0, 0, 0, 0);
    m_attachmentImage = new QLabel(m_attachmentView);
    m_attachmentImage->setObjectName(QStringLiteral("attachmentImageView"));
    m_attachmentImage->setAccessibleName(tr("Attached photo"));
    m_attachmentImage->setFixedHeight(thumbnailHeight);
    m_attachmentImage->setStyleSheet(QStringLiteral("QLabel { border-radius: 12px; }"));
    attachment->addWidget(m_attachmentImage, 0, Qt::AlignLeft | Qt::AlignTop);
    m_clearFileButton = new QPushButton(NamedImages::icon(ImageNames::close, secondary), QString(), m_attachmentView);
    m_clearFileButton->setObjectName(QStringLiteral("clearFileButton"));
    m_clearFileButton->setFocusPolicy(Qt::TabFocus);
    m_clearFileButton->setAccessibleName(tr("Remove Photo"));
    m_clearFileButton->setCursor(Qt::PointingHandCursor);
    m_clearFileButton->setFixedSize(32, 32);
    m_clearFileButton->setToolTip(tr("Remove Photo"));
    m_clearFileButton->setIconSize(QSize(18, 18));
    m_clearFileButton->setStyleSheet(QStringLiteral("QPushButton { background: %1; border-radius: 16px;"
                                                    " border: 2px solid transparent; }"
                                                    "QPushButton:focus { border-color: %2; }")
                                         .arg(card.name(), FocusRing::color().name()));
    connect(m_clearFileButton, &QPushButton::clicked, this, &NoteSheet::clearFile);
    attachment->addWidget(m_clearFileButton, 0, Qt::AlignLeft | Qt::AlignTop);
    attachment->addStretch(1);
    m_attachmentView->hide();
    bodyColumn->addWidget(m_attachmentView);
    bodyColumn->addStretch(1);
    m_scrollView->setWidget(body);
    // The screen's own background shows through (setWidget() made it fill).
    body->setAutoFillBackground(false);

    // Above the keyboard while the note is edited.
    m_doneBar = new QWidget(this);
    m_doneBar->setObjectName(QStringLiteral("doneBar"));
    m_doneBar->setAutoFillBackground(true);
    QPalette barPalette = m_doneBar->palette();
    barPalette.setColor(QPalette::Window, NamedColors::color(ColorNames::separator, Qt::lightGray));
    m_doneBar->setPalette(barPalette);
    auto *doneRow = new QHBoxLayout(m_doneBar);
    doneRow->setContentsMargins(12, 4, 12, 4);
    doneRow->addStretch(1);
    auto *done = new QPushButton(tr("Done"), m_doneBar);
    done->setObjectName(QStringLiteral("doneButton"));
    // For the touch keyboard; from a real keyboard, Tab leaves the note.
    done->setFocusPolicy(Qt::NoFocus);
    done->setFlat(true);
    done->setCursor(Qt::PointingHandCursor);
    done->setStyleSheet(QStringLiteral("QPushButton { color: %1; border: none; %2 font-weight: 600; padding: 6px; }")
                            .arg(accent.name(), TextScale::styleSize(16)));
    connect(done, &QPushButton::clicked, this, &NoteSheet::doneEditing);
    doneRow->addWidget(done);
    m_doneBar->hide();
    column->addWidget(m_doneBar);

    m_buttons = new ButtonRow(this);
    m_buttons->setObjectName(QStringLiteral("buttonRow"));
    m_buttons->setAutoFillBackground(true);
    QPalette buttonsPalette = m_buttons->palette();
    buttonsPalette.setColor(QPalette::Window, card);
    m_buttons->setPalette(buttonsPalette);
    m_buttons->boxLayout()->setContentsMargins(16, 10, 16, 14);
    m_buttons->boxLayout()->setSpacing(10);
    column->addWidget(m_buttons);
}

NoteSheet::~NoteSheet()
{
    if (RavelinNavVC *host = navigationHost(); host && host->notificationCenter())
        removeKeyboardObservers(*host->notificationCenter());
}

QPushButton *NoteSheet::makeActionButton(const QString &title, const QString &name, const QColor &color, bool filled)
{
    auto *button = new QPushButton(title, m_buttons);
    button->setObjectName(name);
    button->setFocusPolicy(Qt::TabFocus);
    button->setCursor(Qt::PointingHandCursor);
    button->setMinimumHeight(TextScale::scaled(46));
    const QColor text = filled ? QColor(Qt::white) : color;
    QColor faded = color;
    faded.setAlphaF(0.35f);
    button->setStyleSheet(QStringLiteral("QPushButton { background: %1; color: %2; border: 1.5px solid %3;"
                                         " border-radius: 12px; %8 font-weight: 600; }"
                                         "QPushButton:pressed { background: %4; }"
                                         "QPushButton:disabled { background: %5; color: %6; border-color: %7; }"
                                         "QPushButton:focus { border: 3px solid %9; }")
                              .arg(filled ? color.name() : QStringLiteral("transparent"), text.name(), color.name(),
                                   filled ? color.darker(115).name() : QStringLiteral("rgba(0,0,0,20)"),
                                   filled ? faded.name(QColor::HexArgb) : QStringLiteral("transparent"),
                                   filled ? QStringLiteral("white") : faded.name(QColor::HexArgb),
                                   faded.name(QColor::HexArgb), TextScale::styleSize(16), FocusRing::color().name()));
    m_buttons->addButton(button);
    return button;
}

void NoteSheet::attach(const QImage &picture)
{
    m_picture = picture;
    const qreal ratio = devicePixelRatioF();
    QPixmap thumbnail
        = QPixmap::fromImage(picture.scaledToHeight(int(thumbnailHeight * ratio), Qt::SmoothTransformation));
    thumbnail.setDevicePixelRatio(ratio);
    m_attachmentImage->setPixmap(thumbnail);
    m_attachmentImage->setFixedWidth(int(thumbnail.width() / ratio));
    m_attachmentView->show();
    m_addFileButton->hide();
}

void NoteSheet::addFile()
{
    RavelinNavVC *host = navigationHost();
    if (!host)
        return;
    host->imagePicker()->pickImage(this, [self = QPointer<NoteSheet>(this)](std::optional<QImage> picture) {
        if (self && picture && !picture->isNull())
            self->attach(*picture);
    });
}

void NoteSheet::clearFile()
{
    m_picture.reset();
    m_attachmentImage->clear();
    m_attachmentView->hide();
    m_addFileButton->show();
}

void NoteSheet::cancel()
{
    dismiss();
}

void NoteSheet::doneEditing()
{
    m_noteField->clearFocus();
    m_doneBar->hide();
}

void NoteSheet::viewWillAppear()
{
    Screen::viewWillAppear();
    if (RavelinNavVC *host = navigationHost(); host && host->notificationCenter())
        addKeyboardObservers(*host->notificationCenter());
}

void NoteSheet::viewWillDisappear()
{
    Screen::viewWillDisappear();
    if (RavelinNavVC *host = navigationHost(); host && host->notificationCenter())
        removeKeyboardObservers(*host->notificationCenter());
}

void NoteSheet::keyboardWillShow(const QRectF &endFrame)
{
    // The body ends where the keyboard begins, and keeps the note in sight.
    const QRect mine(mapToGlobal(QPoint(0, 0)), size());
    const int covered = endFrame.isEmpty() ? 0 : std::max(0, mine.bottom() - int(endFrame.top()));
    m_buttons->setHidden(covered > 0);
    setContentsMargins(0, 0, 0, covered);
    m_scrollView->ensureWidgetVisible(m_noteField, 0, 16);
}

void NoteSheet::keyboardWillHide()
{
    setContentsMargins(0, 0, 0, 0);
    m_buttons->show();
}

bool NoteSheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_noteField) {
        if (event->type() == QEvent::FocusIn)
            m_doneBar->show();
        else if (event->type() == QEvent::FocusOut)
            m_doneBar->hide();
    }
    return Screen::eventFilter(watched, event);
}

} // namespace ravelin
