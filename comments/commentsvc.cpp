#include "comments/commentsvc.h"

#include "api/fatalerror.h"
#include "comments/commentthreadmodel.h"
#include "comments/commentthreadview.h"
#include "comments/custominputbar.h"
#include "comments/imagevc.h"
#include "host/notificationcenter.h"
#include "host/ownedviewmodel.h"
#include "host/ravelinnavvc.h"
#include "resources/namedcolors.h"
#include "views/alertpresenter.h"
#include "views/refreshablescrollarea.h"
#include "views/taprecognizer.h"
#include "views/textscale.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QResizeEvent>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

namespace ravelin {

CommentsVC::CommentsVC(QWidget *parent)
    : RavelinEventVC(parent)
{
    setObjectName(QStringLiteral("CommentsVC"));
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, NamedColors::color(ColorNames::groupedBackground, QColor(0xF2, 0xF2, 0xF7)));
    setPalette(palette);
    setAutoFillBackground(true);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_scrollArea = new RefreshableScrollArea(this);
    m_scrollArea->setObjectName(QStringLiteral("refreshControl"));
    m_scrollArea->viewport()->setAutoFillBackground(false);
    m_scrollArea->setStyleSheet(QStringLiteral("QScrollArea { background: transparent; border: none; }"));
    connect(m_scrollArea, &RefreshableScrollArea::refreshRequested, this, [this] {
        if (!m_fetching)
            pullToRefresh();
    });
    column->addWidget(m_scrollArea, 1);

    auto *content = new QWidget;
    content->setAutoFillBackground(false);
    auto *contentColumn = new QVBoxLayout(content);
    contentColumn->setContentsMargins(0, 6, 0, 30);
    contentColumn->setSpacing(0);
    m_tableView = new CommentThreadView(content);
    connect(m_tableView, &CommentThreadView::pictureTapped, this, &CommentsVC::pictureTapped);
    contentColumn->addWidget(m_tableView);
    m_emptyLabel = new QLabel(emptyMessage(), content);
    m_emptyLabel->setObjectName(QStringLiteral("emptyMessage"));
    m_emptyLabel->setAlignment(Qt::AlignCenter);
    m_emptyLabel->setFont(TextScale::font(m_emptyLabel->font(), 15));
    m_emptyLabel->setStyleSheet(
        QStringLiteral("color: %1;").arg(NamedColors::color(ColorNames::secondaryLabelText, Qt::gray).name()));
    m_emptyLabel->setMinimumHeight(240);
    m_emptyLabel->hide();
    contentColumn->addWidget(m_emptyLabel);
    contentColumn->addStretch(1);
    m_scrollArea->setWidget(content);
    // The screen's own background shows through (setWidget() made it fill).
    content->setAutoFillBackground(false);
}

CommentsVC::~CommentsVC()
{
    if (RavelinNavVC *host = navigationHost(); host && host->notificationCenter())
        removeKeyboardObservers(*host->notificationCenter());
}

void CommentsVC::setViewModel(CommentsVM *viewModel)
{
    adoptViewModel(m_viewModel, viewModel, this);
}

CommentsVM &CommentsVC::requireViewModel() const
{
    return requiredViewModel(m_viewModel, "The comments screen has no view model", "CommentsVC");
}

CustomInputBar *CommentsVC::inputBar()
{
    if (!m_inputBar) {
        m_inputBar = new CustomInputBar(this);
        m_inputBar->setObjectName(QStringLiteral("commentsInputBar"));
        m_inputBar->setPresentingVC(this);
        m_inputBar->setCustomDelegate(this);
        static_cast<QVBoxLayout *>(layout())->addWidget(m_inputBar);
        m_tableView->setObjectName(QStringLiteral("commentsTableView"));
    }
    return m_inputBar;
}

void CommentsVC::viewDidLoad()
{
    RavelinEventVC::viewDidLoad();
    const Clock clock = navigationHost() ? navigationHost()->environment().clock : systemClock();
    m_model = new CommentThreadModel(clock, this);
    m_model->setViewModel(&requireViewModel());
    m_tableView->setThreadModel(m_model);
    const QColor accent = NamedColors::color(ColorNames::accent, QColor(0, 122, 255));
    m_scrollArea->setTintColor(accent);
    m_scrollArea->setRefreshTitle(refreshTitle());
    (void)inputBar(); // docked from the start
    // A tap anywhere but on the bar ends editing.
    auto *taps = new TapRecognizer(this);
    taps->exclude(m_inputBar);
    connect(taps, &TapRecognizer::tapped, this, &CommentsVC::didTap);
    updateEmptyMessage();
    // Comments still in the outbox are part of the thread: their rows follow the
    // outbox at once, and the thread is read again once something reached the server.
    followOutbox([this](bool someSent) {
        showOutbox(someSent);
        if (someSent)
            pullToRefresh();
    });
}

void CommentsVC::didTap()
{
    inputBar()->inputTextView()->clearFocus();
}

void CommentsVC::viewWillAppear()
{
    RavelinEventVC::viewWillAppear();
    if (RavelinNavVC *host = navigationHost(); host && host->notificationCenter())
        addKeyboardObservers(*host->notificationCenter());
}

void CommentsVC::viewWillDisappear()
{
    RavelinEventVC::viewWillDisappear();
    if (RavelinNavVC *host = navigationHost(); host && host->notificationCenter())
        removeKeyboardObservers(*host->notificationCenter());
}

void CommentsVC::resizeEvent(QResizeEvent *event)
{
    RavelinEventVC::resizeEvent(event);
    if (isViewLoaded())
        viewDidLayoutSubviews();
}

void CommentsVC::viewDidLayoutSubviews()
{
    pullToRefresh();
}

void CommentsVC::pullToRefresh()
{
    // One fetch at a time: layout passes that come in a burst share the one
    // under way, whose answer is the thread as it is.
    m_scrollArea->beginRefreshing();
    updateEmptyMessage();
    if (m_fetching)
        return;
    m_fetching = true;
    requireViewModel().fetchComments([self = QPointer<CommentsVC>(this)](bool success) {
        if (self)
            self->fetched(success);
    });
}

void CommentsVC::fetched(bool success)
{
    m_fetching = false;
    m_scrollArea->endRefreshing();
    if (!success) {
        updateEmptyMessage();
        AlertPresenter::presentTransient(this, failureTitle(), QString(), delays().longAlert);
        return;
    }
    showCachedAt(requireViewModel().cachedAt(), m_scrollArea, refreshTitle());
    m_model->reload();
    updateEmptyMessage();
    if (!m_model->isEmpty())
        QTimer::singleShot(0, this, &CommentsVC::scrollToLastRow);
}

void CommentsVC::showOutbox(bool someSent)
{
    requireViewModel().applyOutbox(someSent);
    m_model->reload();
    updateEmptyMessage();
}

void CommentsVC::updateEmptyMessage()
{
    const bool empty = m_model && m_model->isEmpty() && !m_scrollArea->isRefreshing();
    m_emptyLabel->setVisible(empty);
}

void CommentsVC::scrollToLastRow()
{
    const int row = m_model->lastCommentRow();
    if (row < 0)
        return;
    // The newest comment and the screen above it are measured; the thread
    // shows its end.
    m_tableView->scrollTo(m_model->index(row), QAbstractItemView::PositionAtBottom);
    m_scrollArea->verticalScrollBar()->setValue(m_scrollArea->verticalScrollBar()->maximum());
}

void CommentsVC::customInputBarDidPressSend(const QString &text, const std::optional<QImage> &picture,
                                            CustomInputBar *bar)
{
    if (!picture && (text.isEmpty() || text == QLatin1String(" "))) {
        // Nothing to post: the thread is fetched again and the bar starts over.
        pullToRefresh();
        bar->inputTextView()->clearFocus();
        bar->reset();
        return;
    }
    requireViewModel().postComment(
        text, picture, [self = QPointer<CommentsVC>(this), bar = QPointer<CustomInputBar>(bar)](bool posted) {
            if (!self)
                return;
            if (self->outbox()) {
                // Kept in the outbox: it shows now, marked, at the end of the thread.
                self->showOutbox(false);
                QTimer::singleShot(0, self, &CommentsVC::scrollToLastRow);
            } else {
                self->pullToRefresh();
            }
            // What the outbox could not keep stays in the bar.
            if (bar && (posted || !self->outbox())) {
                bar->inputTextView()->clearFocus();
                bar->reset();
            }
        });
}

void CommentsVC::pictureTapped(int row)
{
    const QImage thumbnail = m_model->index(row).data(CommentThreadModel::ThumbnailRole).value<QImage>();
    commentCellDidTapImage(thumbnail.isNull() ? std::nullopt : std::optional(thumbnail));
}

void CommentsVC::commentCellDidTapImage(const std::optional<QImage> &image)
{
    if (!image) {
        AlertPresenter::presentTransient(this, failureTitle(), QString(), delays().longAlert);
        return;
    }
    performSegue(showImageVC, *image);
}

Screen *CommentsVC::makeDestination(const QString &identifier)
{
    if (identifier == showImageVC)
        return new ImageVC;
    return RavelinEventVC::makeDestination(identifier);
}

void CommentsVC::prepare(const QString &identifier, Screen *destination, const std::any &sender)
{
    if (auto *viewer = qobject_cast<ImageVC *>(destination)) {
        if (const auto *image = std::any_cast<QImage>(&sender))
            viewer->setImage(*image);
    }
    RavelinEventVC::prepare(identifier, destination, sender);
}

bool CommentsVC::presentsModally(const QString &identifier) const
{
    return identifier == showImageVC;
}

void CommentsVC::keyboardWillShow(const QRectF &endFrame)
{
    // The bar sits on the keyboard.
    const QRect mine(mapToGlobal(QPoint(0, 0)), size());
    const int covered = endFrame.isEmpty() ? 0 : std::max(0, mine.bottom() - int(endFrame.top()));
    setContentsMargins(0, 0, 0, covered);
}

void CommentsVC::keyboardWillHide()
{
    setContentsMargins(0, 0, 0, 0);
}

} // namespace ravelin
