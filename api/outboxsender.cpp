#include "api/outboxsender.h"

#include "api/debuglog.h"
#include "comments/taskscommentsresponse.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>

namespace ravelin {

namespace {

constexpr int maximumReasonLength = 300;

// A 4xx is the server refusing the result, except for the ones that say "not
// now": a token it no longer takes, a request that took too long, too many requests.
bool isRefusal(int status)
{
    return status >= 400 && status < 500 && status != 401 && status != 408 && status != 429;
}

// The server's reason: the "message" (or "error") of a JSON answer, else the
// body's text, else the status.
QString refusalReason(int status, const QByteArray &body)
{
    const QJsonObject object = QJsonDocument::fromJson(body).object();
    for (const QLatin1String key : {QLatin1String("message"), QLatin1String("error")}) {
        const QString text = object.value(key).toString().trimmed();
        if (!text.isEmpty())
            return text.left(maximumReasonLength);
    }
    const QString text = QString::fromUtf8(body).simplified();
    return text.isEmpty() ? QStringLiteral("HTTP %1").arg(status) : text.left(maximumReasonLength);
}

QByteArray encodeJpeg(const QImage &picture)
{
    QByteArray bytes;
    if (picture.isNull())
        return bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "JPEG", 90);
    return bytes;
}

} // namespace

OutboxSender::OutboxSender(OfflineStore *store, NetworkManager *manager, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_manager(manager)
{
    m_retryTimer.setSingleShot(true);
    connect(&m_retryTimer, &QTimer::timeout, this, [this] {
        m_pausedTasks.clear();
        pump();
    });
}

void OutboxSender::setUserId(std::optional<qint64> userId)
{
    if (userId == m_userId)
        return;
    m_userId = userId;
    m_pausedTasks.clear();
    m_retryTimer.stop();
    m_failuresInARow = 0;
    refreshCounts();
    schedulePump();
}

void OutboxSender::followReachability(QNetworkInformation *information)
{
    if (!information)
        return;
    connect(information, &QNetworkInformation::reachabilityChanged, this,
            [this](QNetworkInformation::Reachability reachability) {
                if (reachability == QNetworkInformation::Reachability::Online)
                    syncNow();
            });
}

std::optional<OutboxEntry> OutboxSender::add(OutboxEntry entry, const QByteArray &jpeg)
{
    entry.id = 0;
    entry.state = OutboxEntry::State::waiting;
    entry.stepsDone = 0;
    entry.attempts = 0;
    entry.reason.clear();
    if (!jpeg.isEmpty() && entry.uploadName.isEmpty())
        entry.uploadName = m_manager->makePhotoFileName(entry.userId);
    std::optional<OutboxEntry> saved = m_store->add(std::move(entry), jpeg);
    if (!saved)
        return std::nullopt;
    emit entryChanged(saved->id, saved->state);
    refreshCounts();
    schedulePump();
    return saved;
}

std::optional<OutboxEntry> OutboxSender::add(OutboxEntry entry, const QImage &picture)
{
    return add(std::move(entry), encodeJpeg(picture));
}

QList<OutboxEntry> OutboxSender::entries() const
{
    return m_userId ? m_store->entries(*m_userId) : QList<OutboxEntry>();
}

QByteArray OutboxSender::picture(qint64 id) const
{
    const std::optional<OutboxEntry> entry = m_store->entry(id);
    return entry && belongsToSession(*entry) ? m_store->picture(*entry) : QByteArray();
}

void OutboxSender::syncNow()
{
    m_retryTimer.stop();
    m_pausedTasks.clear();
    m_failuresInARow = 0;
    schedulePump();
}

bool OutboxSender::retry(qint64 id)
{
    std::optional<OutboxEntry> entry = m_store->entry(id);
    if (!entry || entry->state != OutboxEntry::State::refused || !belongsToSession(*entry))
        return false;
    entry->state = OutboxEntry::State::waiting;
    entry->reason.clear();
    if (!commit(*entry))
        return false;
    emit entryChanged(id, entry->state);
    refreshCounts();
    schedulePump();
    return true;
}

bool OutboxSender::discard(qint64 id)
{
    const std::optional<OutboxEntry> entry = m_store->entry(id);
    if (!entry || entry->state != OutboxEntry::State::refused || !belongsToSession(*entry) || !m_store->remove(id))
        return false;
    emit entryChanged(id, OutboxEntry::State::sent);
    refreshCounts();
    return true;
}

bool OutboxSender::belongsToSession(const OutboxEntry &entry) const
{
    return m_userId && entry.userId == *m_userId;
}

void OutboxSender::schedulePump()
{
    if (m_pumpScheduled)
        return;
    m_pumpScheduled = true;
    QMetaObject::invokeMethod(this, &OutboxSender::pump, Qt::QueuedConnection);
}

// Starts the first pending result of every task that has nothing under way.
void OutboxSender::pump()
{
    m_pumpScheduled = false;
    if (!m_userId)
        return;
    QSet<qint64> seen;
    for (const OutboxEntry &entry : m_store->entries(*m_userId)) {
        if (!entry.isPending() || seen.contains(entry.taskId))
            continue;
        seen.insert(entry.taskId);
        if (m_busyTasks.contains(entry.taskId) || m_pausedTasks.contains(entry.taskId))
            continue;
        m_busyTasks.insert(entry.taskId);
        advance(entry);
    }
    if (isIdle())
        emit idle();
}

void OutboxSender::advance(const OutboxEntry &entry)
{
    if (!belongsToSession(entry)) { // signed out (or another user) meanwhile: it waits for its user
        m_busyTasks.remove(entry.taskId);
        return;
    }
    const bool needsPicture = entry.kind == OutboxEntry::Kind::itemsUpdate || entry.nextStepIsComment();
    if (needsPicture && entry.hasPicture() && !entry.mediaPath) {
        upload(entry);
        return;
    }
    switch (entry.kind) {
    case OutboxEntry::Kind::taskStatus:
        sendRoute(entry, Router::updateTaskStatus(entry.taskId, entry.statusId, entry.userId));
        return;
    case OutboxEntry::Kind::itemsUpdate: sendRoute(entry, Router::updateItemsStatus(entry.itemsToSend())); return;
    case OutboxEntry::Kind::comment:
    case OutboxEntry::Kind::block:
        if (!entry.nextStepIsComment())
            sendRoute(entry, Router::updateTaskStatus(entry.taskId, entry.statusId, entry.userId));
        else if (entry.state == OutboxEntry::State::attempted)
            lookForComment(entry);
        else
            postComment(entry);
        return;
    }
}

void OutboxSender::upload(OutboxEntry entry)
{
    const QImage picture = QImage::fromData(m_store->picture(entry));
    if (picture.isNull()) {
        qCWarning(lcOffline) << "The picture of outbox row" << entry.id << "is missing; it goes without";
        entry.pictureFile.clear();
        advance(entry);
        return;
    }
    const QString name = entry.uploadName.isEmpty() ? m_manager->makePhotoFileName(entry.userId) : entry.uploadName;
    m_manager->uploadImage(picture, name, this, [this, entry](bool success, std::optional<QString> path) mutable {
        if (!success || !path || path->isEmpty()) {
            retryLater(entry, QStringLiteral("the picture was not stored"));
            return;
        }
        // The path is committed before the request that names it: a kill in
        // between sends the same path, never a second upload's.
        entry.mediaPath = *path;
        if (!commit(entry)) {
            retryLater(entry, QStringLiteral("the picture's path could not be written"));
            return;
        }
        advance(entry);
    });
}

void OutboxSender::lookForComment(const OutboxEntry &entry)
{
    m_manager->send(
        Router::getTaskComments(entry.taskId), this, [this, entry](const Result<NetworkManager::RouteAnswer> &result) {
            if (!result.isSuccess() || !result.value().status) {
                retryLater(entry, QStringLiteral("the thread could not be read"));
                return;
            }
            const int status = *result.value().status;
            if (isRefusal(status)) {
                refuse(entry, refusalReason(status, result.value().body));
                return;
            }
            if (status < 200 || status > 299) {
                retryLater(entry, QStringLiteral("the thread could not be read"));
                return;
            }
            const Result<TasksCommentsResponse> thread = NetworkManager::decodeBody<TasksCommentsResponse>(
                result.value().body, NetworkManager::decodingOptions());
            if (!thread.isSuccess()) {
                retryLater(entry, QStringLiteral("the thread could not be read"));
                return;
            }
            const TaskCommentPayload &payload = *entry.commentPayload;
            for (const CommentPtr &comment : thread.value().data) {
                if (comment->userId == entry.userId && comment->dateCreated.toMSecsSinceEpoch() == payload.dateCreated
                    && comment->text.value_or(QString()) == payload.text) {
                    qCDebug(lcOffline) << "Outbox row" << entry.id << "is on the server already";
                    stepDone(entry);
                    return;
                }
            }
            postComment(entry);
        });
}

void OutboxSender::postComment(OutboxEntry entry)
{
    // Its own commit before the request: from here on the comment may be on the server.
    entry.state = OutboxEntry::State::attempted;
    ++entry.attempts;
    if (!commit(entry)) {
        retryLater(entry, QStringLiteral("the attempt could not be written"));
        return;
    }
    emit entryChanged(entry.id, entry.state);
    sendRoute(entry, Router::postComment(entry.commentToSend()));
}

void OutboxSender::sendRoute(const OutboxEntry &entry, const Router &route)
{
    m_manager->send(route, this,
                    [this, entry](const Result<NetworkManager::RouteAnswer> &result) { answered(entry, result); });
}

void OutboxSender::answered(const OutboxEntry &entry, const Result<NetworkManager::RouteAnswer> &result)
{
    if (!result.isSuccess()) {
        retryLater(entry, QStringLiteral("no session: ") + result.error().localizedDescription());
        return;
    }
    const NetworkManager::RouteAnswer &answer = result.value();
    if (!answer.status) {
        retryLater(entry, QStringLiteral("no answer"));
        return;
    }
    const int status = *answer.status;
    if (status >= 200 && status <= 299)
        stepDone(entry);
    else if (isRefusal(status))
        refuse(entry, refusalReason(status, answer.body));
    else
        retryLater(entry, QStringLiteral("HTTP %1").arg(status));
}

void OutboxSender::stepDone(OutboxEntry entry)
{
    m_failuresInARow = 0;
    if (entry.kind == OutboxEntry::Kind::block && entry.stepsDone == 0) {
        // The incident comment is on the server; the status change follows.
        entry.stepsDone = 1;
        entry.state = OutboxEntry::State::waiting;
        if (!commit(entry)) {
            retryLater(entry, QStringLiteral("the step could not be written"));
            return;
        }
        emit entryChanged(entry.id, entry.state);
        advance(entry);
        return;
    }
    entry.state = OutboxEntry::State::sent;
    if (!commit(entry)) {
        // Sent again later: status and item updates are idempotent, and an
        // attempted comment is looked for before it is posted again.
        retryLater(entry, QStringLiteral("the sent state could not be written"));
        return;
    }
    qCDebug(lcOffline) << "Outbox row" << entry.id << "sent";
    emit entryChanged(entry.id, entry.state);
    refreshCounts();
    taskFinished(entry.taskId);
}

void OutboxSender::refuse(OutboxEntry entry, const QString &reason)
{
    qCInfo(lcOffline).noquote() << "Outbox row" << entry.id << "refused:" << reason;
    entry.state = OutboxEntry::State::refused;
    entry.reason = reason;
    if (!commit(entry)) {
        retryLater(entry, QStringLiteral("the refusal could not be written"));
        return;
    }
    emit entryChanged(entry.id, entry.state);
    refreshCounts();
    taskFinished(entry.taskId);
}

void OutboxSender::retryLater(OutboxEntry entry, const QString &why)
{
    qCDebug(lcOffline).noquote() << "Outbox row" << entry.id << "waits for a retry:" << why;
    if (entry.kind != OutboxEntry::Kind::comment || entry.state != OutboxEntry::State::attempted) {
        ++entry.attempts;
        commit(entry);
    }
    m_busyTasks.remove(entry.taskId);
    m_pausedTasks.insert(entry.taskId);
    ++m_failuresInARow;
    if (!m_retryTimer.isActive()) {
        const int doublings = std::min(m_failuresInARow - 1, 20);
        const std::chrono::milliseconds delay = m_backoff.first * (1 << doublings);
        m_retryTimer.start(std::min(m_backoff.max, delay));
    }
}

void OutboxSender::taskFinished(qint64 taskId)
{
    m_busyTasks.remove(taskId);
    schedulePump();
}

bool OutboxSender::commit(const OutboxEntry &entry)
{
    return m_store->update(entry);
}

void OutboxSender::refreshCounts()
{
    const OfflineStore::Counts counts = m_userId ? m_store->counts(*m_userId) : OfflineStore::Counts();
    if (counts == m_counts)
        return;
    m_counts = counts;
    emit countsChanged(counts.waiting, counts.refused);
}

} // namespace ravelin
