#include "comments/commentsvm.h"

#include "api/apiqueue.h"
#include "api/debuglog.h"
#include "api/fatalerror.h"
#include "api/networkmanager.h"
#include "api/outboxsender.h"
#include "comments/media.h"
#include "comments/taskcommentpayload.h"
#include "comments/taskscommentsresponse.h"

#include <QMap>
#include <QTimeZone>
#include <QTimer>

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
    const Router route = Router::getTaskComments(m_task->id);
    m_networkManager->request<TasksCommentsResponse>(
        route, ApiQueue::shared(), this,
        [this, route, completion = std::move(completion)](const Result<TasksCommentsResponse> &result) {
            m_cachedAt = m_networkManager ? m_networkManager->cachedAnswerTime(route) : std::nullopt;
            if (!result.isSuccess()) {
                debugLog(lcComments,
                         QStringLiteral("We got a failure trying to get the comments. The error we got was: ")
                             + result.error().localizedDescription());
                completion(false);
                return;
            }
            debugLog(lcComments, QStringLiteral("Fetched comments %1").arg(result.value().data.size()));
            const OutboxSender *outbox = m_networkManager ? m_networkManager->outbox() : nullptr;
            setComments(outbox ? withPending(result.value().data, outbox->pending().comments(m_task->id), m_users)
                               : result.value().data);
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
    if (OutboxSender *outbox = m_networkManager->outbox()) {
        // Saved in the outbox, the comment is as good as posted: it shows, marked, until it is.
        const TaskCommentPayload payload(text, m_task->id, m_users.currentUser.id, std::nullopt, false, std::nullopt,
                                         m_networkManager->clock()());
        const OutboxEntry entry = OutboxEntry::comment(payload);
        const bool saved = (picture ? outbox->add(entry, *picture) : outbox->add(entry)).has_value();
        QTimer::singleShot(0, this, [completion = std::move(completion), saved] { completion(saved); });
        return;
    }
    m_networkManager->postComment(m_task->id, m_users.currentUser.id, text, picture, false, this,
                                  std::move(completion));
}

namespace {

// A comment is the one its outbox entry posts: same author, time to the millisecond and text.
bool isPosting(const Comment &comment, const OutboxEntry &entry)
{
    const std::optional<TaskCommentPayload> &payload = entry.commentPayload;
    return payload && comment.userId == payload->userId
        && comment.dateCreated.toMSecsSinceEpoch() == payload->dateCreated
        && comment.text.value_or(QString()) == payload->text;
}

} // namespace

void CommentsVM::applyOutbox(bool someSent)
{
    const OutboxSender *outbox = m_networkManager ? m_networkManager->outbox() : nullptr;
    if (!outbox)
        return;
    const QList<OutboxEntry> pending = outbox->pending().comments(m_task->id);
    QList<CommentPtr> kept;
    kept.reserve(m_comments.size());
    for (const CommentPtr &comment : std::as_const(m_comments)) {
        if (comment->syncMark == SyncMark::none) {
            kept.append(comment);
            continue;
        }
        const bool stillPending = std::any_of(pending.cbegin(), pending.cend(),
                                              [&comment](const OutboxEntry &e) { return isPosting(*comment, e); });
        if (stillPending || !someSent)
            continue; // withPending() adds it again with its mark, or it was discarded
        auto sent = std::make_shared<Comment>(*comment);
        sent->syncMark = SyncMark::none;
        kept.append(sent);
    }
    setComments(withPending(std::move(kept), pending, m_users));
}

QList<CommentPtr> CommentsVM::withPending(QList<CommentPtr> comments, const QList<OutboxEntry> &pending,
                                          const UsersData &users)
{
    for (const OutboxEntry &entry : pending) {
        if (!entry.commentPayload)
            continue;
        const TaskCommentPayload &payload = *entry.commentPayload;
        const auto onServer = std::any_of(comments.cbegin(), comments.cend(),
                                          [&entry](const CommentPtr &c) { return isPosting(*c, entry); });
        if (onServer)
            continue;
        auto comment = std::make_shared<Comment>();
        comment->text = payload.text;
        comment->userId = payload.userId;
        if (payload.itemId)
            comment->itemIds = {*payload.itemId};
        comment->isIncident = payload.isIncident;
        comment->dateCreated = QDateTime::fromMSecsSinceEpoch(payload.dateCreated, QTimeZone::utc());
        comment->assetName = users.currentUser.name;
        comment->assetIcon = QStringLiteral("list_pin_") + users.currentUser.icon.value_or(QString());
        comment->syncMark = entry.state == OutboxEntry::State::refused ? SyncMark::notSent : SyncMark::waiting;
        if (entry.hasPicture()) {
            auto media = std::make_shared<Media>();
            media->path = outboxPicturePath(entry.id);
            media->dateCreated = comment->dateCreated;
            comment->media = {media};
        }
        comments.append(comment);
    }
    return comments;
}

QString CommentsVM::outboxPicturePath(qint64 entryId)
{
    return QStringLiteral("outbox:") + QString::number(entryId);
}

std::optional<qint64> CommentsVM::outboxPictureId(const QString &path)
{
    if (!path.startsWith(QLatin1String("outbox:")))
        return std::nullopt;
    bool ok = false;
    const qint64 id = path.mid(7).toLongLong(&ok);
    return ok ? std::optional(id) : std::nullopt;
}

NetworkManager *CommentsVM::networkManager() const
{
    return m_networkManager;
}

} // namespace ravelin
