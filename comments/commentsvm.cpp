#include "comments/commentsvm.h"

#include "api/apiqueue.h"
#include "api/debuglog.h"
#include "api/fatalerror.h"
#include "api/networkmanager.h"
#include "comments/taskscommentsresponse.h"

#include <QMap>

#include <algorithm>

namespace ravelin {

CommentsVM::CommentsVM(TaskPtr task, NetworkManager *networkManager, UsersData users, QObject *parent)
    : QObject(parent)
    , m_task(std::move(task))
    , m_networkManager(networkManager)
    , m_users(std::move(users))
{ }

void CommentsVM::fetchComments(std::function<void(bool)> completion)
{
    m_networkManager->request<TasksCommentsResponse>(
        Router::getTaskComments(m_task->id), ApiQueue::shared(), this,
        [this, completion = std::move(completion)](const Result<TasksCommentsResponse> &result) {
            if (!result.isSuccess()) {
                debugLog(lcComments,
                         QStringLiteral("We got a failure trying to get the comments. The error we got was: ")
                             + result.error().localizedDescription());
                completion(false);
                return;
            }
            debugLog(lcComments, QStringLiteral("Fetched comments %1").arg(result.value().data.size()));
            setComments(result.value().data);
            completion(true);
        });
}

void CommentsVM::setComments(QList<CommentPtr> comments)
{
    // Newest first. Grouping depends only on the set of comments and their
    // order within equal dates, so one rebuild gives the final state.
    std::stable_sort(comments.begin(), comments.end(),
                     [](const CommentPtr &a, const CommentPtr &b) { return a->dateCreated > b->dateCreated; });
    m_comments = std::move(comments);
    m_groupedComments = group(m_comments);
}

QList<CommentSection> CommentsVM::group(const QList<CommentPtr> &comments)
{
    QMap<QDate, QList<CommentPtr>> byDay;
    for (const CommentPtr &comment : comments) {
        const QDate day = comment->dateCreated.toLocalTime().date();
        if (!day.isValid())
            fatalError(QStringLiteral("A comment's day cannot be formed"), "CommentsVM");
        byDay[day].append(comment);
    }
    QList<CommentSection> sections;
    sections.reserve(byDay.size());
    for (auto it = byDay.begin(); it != byDay.end(); ++it) {
        std::stable_sort(it->begin(), it->end(),
                         [](const CommentPtr &a, const CommentPtr &b) { return a->dateCreated < b->dateCreated; });
        sections.append(CommentSection{it.key().startOfDay(), std::move(*it)});
    }
    return sections;
}

int CommentsVM::numberOfRows(int section) const
{
    return int(this->section(section).comments.size());
}

const CommentSection &CommentsVM::section(int index) const
{
    if (index < 0 || index >= m_groupedComments.size())
        fatalError(QStringLiteral("No comment section %1").arg(index), "CommentsVM");
    return m_groupedComments.at(index);
}

std::unique_ptr<CommentTableViewCellVM> CommentsVM::cellViewModel(int sectionIndex, int row) const
{
    const CommentSection &s = section(sectionIndex);
    if (row < 0 || row >= s.comments.size())
        fatalError(QStringLiteral("No comment at row %1").arg(row), "CommentsVM");
    return std::make_unique<CommentTableViewCellVM>(CommentCellDetail::make(*s.comments.at(row), *m_task),
                                                    m_networkManager);
}

void CommentsVM::postComment(const QString &text, const std::optional<QImage> &picture,
                             std::function<void(bool)> completion)
{
    m_networkManager->postComment(m_task->id, m_users.currentUser.id, text, picture, false, this,
                                  std::move(completion));
}

NetworkManager *CommentsVM::networkManager() const
{
    return m_networkManager;
}

} // namespace ravelin
