// The comment thread at scale, offscreen: for 20, 200 and 2,000 comments
// (every fifth with a picture), what the main thread pays from the thread's
// answer (decoded and grouped by the view model) to the first painted frame
// of the thread as the comments screen builds it (its refreshable scrolling
// area around the painted list, scrolled to the newest comment), and how many
// thumbnails that frame asked for. Then a new comment arriving at the end.

#include "api/clock.h"
#include "api/usersdata.h"
#include "comments/commentsvm.h"
#include "comments/commentthreadmodel.h"
#include "comments/commentthreadview.h"
#include "comments/thumbnailcache.h"
#include "tasks/task.h"
#include "views/refreshablescrollarea.h"

#include "screenbench.h"

#include <QScrollBar>

#include <memory>

using namespace ravelin;

namespace {

const std::array<const char *, 5> notes{"On site, starting now.",
                                        "Half of the checkpoints done, continuing after lunch.",
                                        "Keys are in the lock box at the gate, code as usual.",
                                        "Customer reported low pressure in the area, keep an eye on it.",
                                        "Reading outside the allowed range, photo attached."};

const QDateTime newest = QDateTime::fromMSecsSinceEpoch(1790000000000, Qt::UTC);

// `count` comments twenty minutes apart up to `newest`, every fifth with a picture.
QList<CommentPtr> thread(int count)
{
    QList<CommentPtr> comments;
    for (int n = 0; n < count; ++n) {
        auto comment = std::make_shared<Comment>();
        comment->text = QStringLiteral("%1 (%2)").arg(QString::fromUtf8(notes[std::size_t(n) % notes.size()])).arg(n);
        comment->userId = n % 2 == 0 ? 1 : 4;
        comment->assetName = n % 2 == 0 ? QStringLiteral("Ann Rivers") : QStringLiteral("Dispatch Desk");
        comment->dateCreated = newest.addSecs(-qint64(count - n) * 20 * 60);
        if (n % 5 == 4) {
            auto media = std::make_shared<Media>();
            media->path = QStringLiteral("media/task-105/thread-%1.jpg").arg(n + 1);
            comment->media.append(media);
        }
        comments.append(comment);
    }
    return comments;
}

// The thread as the comments screen shows it, in a phone-sized window. The
// view model has no network: a thumbnail asked for fails at once, and is
// counted all the same.
struct Screen : bench::PhoneWindow
{
    explicit Screen(const QList<CommentPtr> &comments)
        : PhoneWindow(false)
    {
        layout->setContentsMargins(0, 0, 0, 0);
        area = new RefreshableScrollArea(&window);
        area->setWidgetResizable(true);
        layout->addWidget(area);
        auto *content = new QWidget;
        auto *contentColumn = new QVBoxLayout(content);
        contentColumn->setContentsMargins(0, 6, 0, 30);
        view = new CommentThreadView(content);
        contentColumn->addWidget(view);
        contentColumn->addStretch(1);
        area->setWidget(content);
        show();

        auto task = std::make_shared<Task>();
        task->id = 105;
        viewModel = std::make_unique<CommentsVM>(task, nullptr, UsersData{});
        viewModel->setComments(comments);
        model = new CommentThreadModel(fixedClock(TimePoint(std::chrono::milliseconds(newest.toMSecsSinceEpoch()))),
                                       &window);
        model->setViewModel(viewModel.get());
        view->setThreadModel(model);
        scrollToEnd();
        frame();
    }

    void scrollToEnd()
    {
        view->scrollTo(model->index(model->lastCommentRow()), QAbstractItemView::PositionAtBottom);
        area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
    }

    RefreshableScrollArea *area = nullptr;
    CommentThreadView *view = nullptr;
    CommentThreadModel *model = nullptr;
    std::unique_ptr<CommentsVM> viewModel;
};

void BM_CommentsScreenOpen(benchmark::State &state)
{
    const QList<CommentPtr> comments = thread(int(state.range(0)));
    int requests = 0;
    int measured = 0;
    for (auto _ : state) {
        auto screen = std::make_unique<Screen>(comments);
        state.PauseTiming();
        requests = screen->model->thumbnails()->requestCount();
        measured = screen->view->measuredRowCount();
        screen->saveShot("comments", state);
        screen.reset();
        state.ResumeTiming();
    }
    state.counters["pictures"] = double(state.range(0) / 5);
    state.counters["thumbnailRequests"] = requests;
    state.counters["measuredRows"] = measured;
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// A posted comment comes back with the next answer: one row (or a day and a
// row) inserted at the end, and the thread scrolled to it.
void BM_CommentsScreenNewComment(benchmark::State &state)
{
    QList<CommentPtr> comments = thread(int(state.range(0)));
    Screen screen(comments);
    int n = 0;
    for (auto _ : state) {
        auto comment = std::make_shared<Comment>();
        comment->text = QStringLiteral("Posted %1").arg(++n);
        comment->userId = 1;
        comment->assetName = QStringLiteral("Ann Rivers");
        comment->dateCreated = newest.addSecs(n);
        comments.append(comment);
        screen.viewModel->setComments(comments);
        screen.model->reload();
        screen.scrollToEnd();
        screen.frame();
    }
    state.SetItemsProcessed(state.iterations());
}

} // namespace

RAVELIN_SCREEN_BENCHMARK(BM_CommentsScreenOpen, 20, 200, 2000);
RAVELIN_SCREEN_BENCHMARK(BM_CommentsScreenNewComment, 20, 200, 2000);

RAVELIN_SCREEN_BENCHMARK_MAIN()
