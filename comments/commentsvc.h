#pragma once

#include "comments/commentsvm.h"
#include "comments/commenttableviewcelldelegate.h"
#include "comments/custominputbardelegate.h"
#include "host/ravelineventvc.h"
#include "views/keyboardobserving.h"

#include <QPointer>

class QLabel;

namespace ravelin {

class CommentThreadModel;
class CommentThreadView;
class CustomInputBar;
class RefreshableScrollArea;

// A task's comment thread: one header per day, the comments oldest first with
// the newest at the bottom, and the input bar docked below (kept above the
// on-screen keyboard). The thread is fetched whenever the screen lays itself
// out (on appearing, on a change of size), on pull and after every post; one
// fetch at a time.
class CommentsVC
    : public RavelinEventVC
    , public KeyboardObserving
    , public CustomInputBarDelegate
    , public CommentTableViewCellDelegate
{
    Q_OBJECT

public:
    [[nodiscard]] static QString refreshTitle() { return tr("Fetching comments ..."); }
    [[nodiscard]] static QString emptyMessage() { return tr("No comments"); }
    [[nodiscard]] static QString failureTitle() { return tr("The operation couldn't be completed"); }
    static inline const QString showImageVC = QStringLiteral("ShowImageVC");

    explicit CommentsVC(QWidget *parent = nullptr);
    ~CommentsVC() override;

    // Set before the screen loads; the screen owns its view model.
    [[nodiscard]] CommentsVM *viewModel() const { return m_viewModel; }
    void setViewModel(CommentsVM *viewModel);

    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewWillDisappear() override;
    // A layout pass: the thread is fetched again (unless a fetch is under way).
    void viewDidLayoutSubviews();

    void pullToRefresh();
    // A tap on the screen: the keyboard goes (the comment's text view lets go of the focus).
    void didTap();
    [[nodiscard]] bool isFetching() const { return m_fetching; }

    // CustomInputBarDelegate and CommentTableViewCellDelegate.
    void customInputBarDidPressSend(const QString &text, const std::optional<QImage> &picture,
                                    CustomInputBar *inputBar) override;
    void commentCellDidTapImage(const std::optional<QImage> &image) override;

    // The views, for the tests and the tour.
    [[nodiscard]] CustomInputBar *inputBar();
    [[nodiscard]] CommentThreadView *tableView() const { return m_tableView; }
    [[nodiscard]] CommentThreadModel *threadModel() const { return m_model; }
    [[nodiscard]] RefreshableScrollArea *refreshControl() const { return m_scrollArea; }
    [[nodiscard]] QLabel *emptyMessageLabel() const { return m_emptyLabel; }

protected:
    [[nodiscard]] Screen *makeDestination(const QString &identifier) override;
    void prepare(const QString &identifier, Screen *destination, const std::any &sender) override;
    [[nodiscard]] bool presentsModally(const QString &identifier) const override;
    void keyboardWillShow(const QRectF &endFrame) override;
    void keyboardWillHide() override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void fetched(bool success);
    void scrollToLastRow();
    void updateEmptyMessage();
    // The thread with the outbox as it is now (see CommentsVM::applyOutbox()).
    void showOutbox(bool someSent);
    void pictureTapped(int row);
    [[nodiscard]] CommentsVM &requireViewModel() const;

    QPointer<CommentsVM> m_viewModel;
    CommentThreadModel *m_model = nullptr;
    RefreshableScrollArea *m_scrollArea = nullptr;
    CommentThreadView *m_tableView = nullptr;
    QLabel *m_emptyLabel = nullptr;
    CustomInputBar *m_inputBar = nullptr;
    bool m_fetching = false;
};

} // namespace ravelin
