#pragma once

#include "api/clock.h"
#include "api/outboxentry.h"
#include "api/usersdata.h"
#include "comments/comment.h"
#include "comments/commentcelldetail.h"
#include "comments/commenttableviewcellvm.h"
#include "tasks/task.h"

#include <QDateTime>
#include <QImage>
#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

namespace ravelin {

class NetworkManager;

// The comments of one local calendar day, oldest first.
struct CommentSection
{
    QDateTime date; // the start of the day, local time
    QList<CommentPtr> comments;
};

// The comment thread of one task: fetched, kept newest first, grouped by day.
class CommentsVM : public QObject
{
    Q_OBJECT

public:
    CommentsVM(TaskPtr task, NetworkManager *networkManager, UsersData users, QObject *parent = nullptr);

    [[nodiscard]] const TaskPtr &task() const { return m_task; }
    [[nodiscard]] NetworkManager *networkManager() const;
    [[nodiscard]] const UsersData &users() const { return m_users; }
    [[nodiscard]] const QList<CommentPtr> &comments() const { return m_comments; }
    [[nodiscard]] const QList<CommentSection> &groupedComments() const { return m_groupedComments; }

    // When the last fetch was answered from the offline cache: when the server
    // had given that answer. None when it came from the server.
    [[nodiscard]] std::optional<TimePoint> cachedAt() const { return m_cachedAt; }
    // Fetches the thread; success whatever the answer's own success flag says.
    void fetchComments(std::function<void(bool success)> completion);
    // Keeps the given comments newest first and regroups them (what a fetch does with its answer).
    void setComments(QList<CommentPtr> comments);

    [[nodiscard]] int numberOfSections() const { return int(m_groupedComments.size()); }
    [[nodiscard]] int numberOfRows(int section) const;
    [[nodiscard]] const CommentSection &section(int index) const;
    // A new cell view model for the comment at that position; out of range stops the process.
    [[nodiscard]] std::unique_ptr<CommentTableViewCellVM> cellViewModel(int section, int row) const;

    // Posts a comment written on the comments screen (never an incident).
    void postComment(const QString &text, const std::optional<QImage> &picture, std::function<void(bool)> completion);

    // Adds the task's comments still in the outbox (with their marks) to an
    // answer, unless the server has them already: same author, `date_created`
    // in milliseconds and text.
    [[nodiscard]] static QList<CommentPtr> withPending(QList<CommentPtr> comments, const QList<OutboxEntry> &pending,
                                                       const UsersData &users);
    // Takes the outbox as it is now into the comments kept, without a fetch: new
    // pending comments show, marks follow their rows, and a comment that left the
    // outbox stays unmarked when something was sent (the next fetch has the
    // server's copy) and goes otherwise (it was discarded).
    void applyOutbox(bool someSent);
    // The picture of a comment still in the outbox is found by this path
    // ("outbox:" + the outbox row); nothing for a server path.
    [[nodiscard]] static QString outboxPicturePath(qint64 entryId);
    [[nodiscard]] static std::optional<qint64> outboxPictureId(const QString &path);

    // Groups comments by local calendar day: days oldest first, each day's
    // comments oldest first (ties keep their order).
    [[nodiscard]] static QList<CommentSection> group(const QList<CommentPtr> &comments);

private:
    TaskPtr m_task;
    QPointer<NetworkManager> m_networkManager;
    QList<CommentPtr> m_comments;
    UsersData m_users;
    QList<CommentSection> m_groupedComments;
    std::optional<TimePoint> m_cachedAt;
};

} // namespace ravelin
