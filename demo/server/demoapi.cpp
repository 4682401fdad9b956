#include "demo/server/demoapi.h"

#include "demo/server/demopictures.h"
#include "demo/server/demowire.h"

#include <QBuffer>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ravelin {

namespace {

constexpr int kTaskStatusCount = 6;
constexpr int kPriorityAll = 4;

const QString kFilesPrefix = QStringLiteral("/files/");
const QString kThumbnailPrefix = QStringLiteral("thumbnails/thumb_");
const QString kUploadFolder = QStringLiteral("uploads/");

DemoResponse answer(int status, QByteArray body)
{
    return DemoResponse{status, std::move(body), "application/json"};
}

DemoResponse ok(const QJsonValue &data = QJsonValue(QJsonValue::Undefined))
{
    return answer(200, demowire::success(data));
}

DemoResponse fail(int status, const QString &message)
{
    return answer(status, demowire::failure(message));
}

DemoResponse notFound()
{
    return fail(404, QStringLiteral("Not found"));
}

DemoResponse badRequest(const QString &message)
{
    return fail(400, message);
}

std::optional<qint64> integer(const QJsonValue &value)
{
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    if (!std::isfinite(number) || std::trunc(number) != number || std::abs(number) > 9007199254740992.0)
        return std::nullopt;
    return value.toInteger();
}

std::optional<qint64> integer(const QString &text)
{
    bool valid = false;
    const qint64 value = text.toLongLong(&valid);
    return valid ? std::optional<qint64>(value) : std::nullopt;
}

// "null" or absent gives an empty optional; a value of another type is an error.
template<typename T>
bool optionalField(const QJsonObject &object, const char *key, std::optional<T> &out)
{
    const QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined() || value.isNull()) {
        out.reset();
        return true;
    }
    if constexpr (std::is_same_v<T, QString>) {
        if (!value.isString())
            return false;
        out = value.toString();
        return true;
    } else {
        const auto number = integer(value);
        if (!number)
            return false;
        out = *number;
        return true;
    }
}

std::optional<QJsonObject> jsonObject(const QByteArray &body)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return document.object();
}

// "/api/task/12/comments" -> {"api", "task", "12", "comments"}
QStringList segments(const QString &path)
{
    return path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

bool isSafeFileName(const QString &name)
{
    static const QRegularExpression pattern(QStringLiteral("^[A-Za-z0-9_][A-Za-z0-9_.-]{0,127}$"));
    return pattern.match(name).hasMatch() && !name.contains(QStringLiteral(".."));
}

} // namespace

DemoApi::DemoApi(DemoData data, DemoClock clock)
    : m_data(std::move(data))
    , m_clock(std::move(clock))
{ }

DemoResponse DemoApi::handle(const DemoRequest &request)
{
    std::lock_guard lock(m_mutex);
    return route(request);
}

std::optional<QString> DemoApi::signIn(qint64 userId)
{
    std::lock_guard lock(m_mutex);
    const DemoUser *user = m_data.user(userId);
    if (!user || !user->canSignIn)
        return std::nullopt;
    return issueToken(userId);
}

QList<DemoUser> DemoApi::users() const
{
    std::lock_guard lock(m_mutex);
    return m_data.users;
}

DemoResponse DemoApi::route(const DemoRequest &request)
{
    const QByteArray &method = request.method;
    if (request.path.startsWith(kFilesPrefix))
        return method == "GET" ? file(request.path.mid(kFilesPrefix.size())) : notFound();

    const QStringList parts = segments(request.path);
    if (parts.value(0) != QStringLiteral("api"))
        return notFound();

    if (method == "POST" && request.path == QStringLiteral("/api/demo/sign-in")) {
        const auto body = jsonObject(request.body);
        return body ? signInRoute(*body) : badRequest(QStringLiteral("The body is not a JSON object"));
    }

    const auto user = tokenUser(request.authorization);
    if (!user)
        return fail(401, QStringLiteral("Invalid or missing token"));

    const qsizetype count = parts.size();
    const auto idAt = [&parts](qsizetype index) { return integer(parts.value(index)); };
    const auto withBody = [&request](auto &&handler) {
        const auto body = jsonObject(request.body);
        return body ? handler(*body) : badRequest(QStringLiteral("The body is not a JSON object"));
    };

    if (method == "GET") {
        if (count == 2 && parts[1] == QStringLiteral("settings-constants"))
            return settingsConstants();
        if (count == 2 && parts[1] == QStringLiteral("regenerate-token"))
            return regenerateToken(*user);
        if (count == 4 && parts[1] == QStringLiteral("tasks") && parts[2] == QStringLiteral("assigned-user") && idAt(3))
            return tasksOf(*idAt(3), request.query);
        if (count == 4 && parts[1] == QStringLiteral("items") && parts[2] == QStringLiteral("taskId") && idAt(3))
            return itemsOf(*idAt(3));
        if (count == 4 && parts[1] == QStringLiteral("task") && parts[3] == QStringLiteral("comments") && idAt(2))
            return commentsOf(*idAt(2));
    } else if (method == "PUT") {
        if (count == 3 && parts[1] == QStringLiteral("task") && idAt(2))
            return withBody([&](const QJsonObject &body) { return updateTask(*idAt(2), body); });
        if (count == 3 && parts[1] == QStringLiteral("item") && parts[2] == QStringLiteral("status"))
            return withBody([&](const QJsonObject &body) { return updateItems(body); });
    } else if (method == "POST") {
        if (count == 2 && parts[1] == QStringLiteral("comment"))
            return withBody([&](const QJsonObject &body) { return postComment(body); });
        if (count == 3 && parts[1] == QStringLiteral("demo") && parts[2] == QStringLiteral("upload"))
            return upload(request.query, request.body);
    }
    return notFound();
}

DemoResponse DemoApi::settingsConstants() const
{
    return ok(QJsonObject{
        {"item_status", demowire::definitions(m_data.itemStatuses)},
        {"task_status", demowire::definitions(m_data.taskStatuses)},
        {"task_category", demowire::definitions(m_data.taskCategories)},
    });
}

DemoResponse DemoApi::regenerateToken(qint64 userId)
{
    return ok(issueToken(userId));
}

DemoResponse DemoApi::tasksOf(qint64 userId, const QUrlQuery &query) const
{
    // Outer empty: present but not a number; inner empty: absent.
    const auto number = [&query](const QString &name) -> std::optional<std::optional<qint64>> {
        if (!query.hasQueryItem(name))
            return std::optional<qint64>();
        const auto value = integer(query.queryItemValue(name, QUrl::FullyDecoded));
        if (!value)
            return std::nullopt;
        return value;
    };

    const auto dateStart = number(QStringLiteral("dateStart"));
    const auto dateEnd = number(QStringLiteral("dateEnd"));
    if (!dateStart || !*dateStart || !dateEnd || !*dateEnd)
        return badRequest(QStringLiteral("dateStart and dateEnd are required, in milliseconds since 1970"));
    const auto priority = number(QStringLiteral("priority"));
    if (!priority || (*priority && (**priority < 0 || **priority > kPriorityAll)))
        return badRequest(QStringLiteral("priority must be 0 to 4"));
    const auto category = number(QStringLiteral("task_category_id"));
    if (!category)
        return badRequest(QStringLiteral("task_category_id must be a number"));

    const QString orderBy = query.hasQueryItem(QStringLiteral("orderBy"))
        ? query.queryItemValue(QStringLiteral("orderBy"))
        : QStringLiteral("date_created");
    const QString sortBy = query.hasQueryItem(QStringLiteral("sortBy")) ? query.queryItemValue(QStringLiteral("sortBy"))
                                                                        : QStringLiteral("DESC");
    if (orderBy != QStringLiteral("name") && orderBy != QStringLiteral("priority")
        && orderBy != QStringLiteral("date_created"))
        return badRequest(QStringLiteral("orderBy must be name, priority or date_created"));
    if (sortBy != QStringLiteral("ASC") && sortBy != QStringLiteral("DESC"))
        return badRequest(QStringLiteral("sortBy must be ASC or DESC"));

    QList<const DemoTask *> selected;
    for (const DemoTask &task : m_data.tasks) {
        const qint64 created = task.dateCreated.toMSecsSinceEpoch();
        if (task.assignedUserId != userId || created < **dateStart || created > **dateEnd)
            continue;
        if (*priority && **priority != kPriorityAll && task.priority != **priority)
            continue;
        if (*category && task.taskCategoryId != **category)
            continue;
        selected.append(&task);
    }

    // A three-way comparison on the chosen key; ties keep the stored order.
    const auto compare = [&orderBy](const DemoTask *a, const DemoTask *b) -> int {
        if (orderBy == QStringLiteral("name"))
            return a->name.compare(b->name, Qt::CaseInsensitive);
        if (orderBy == QStringLiteral("priority"))
            return a->priority - b->priority;
        const qint64 difference = a->dateCreated.toMSecsSinceEpoch() - b->dateCreated.toMSecsSinceEpoch();
        return difference < 0 ? -1 : (difference > 0 ? 1 : 0);
    };
    const bool ascending = sortBy == QStringLiteral("ASC");
    std::stable_sort(selected.begin(), selected.end(), [&](const DemoTask *a, const DemoTask *b) {
        const int order = compare(a, b);
        return ascending ? order < 0 : order > 0;
    });

    const QHash<qint64, std::array<int, 3>> counts = m_data.itemCountsByTask();
    QJsonArray tasks;
    for (const DemoTask *task : selected)
        tasks.append(demowire::task(*task, counts.value(task->id, {0, 0, 0})));
    return ok(tasks);
}

DemoResponse DemoApi::itemsOf(qint64 taskId) const
{
    if (!m_data.task(taskId))
        return notFound();
    QJsonArray items;
    for (const DemoItem &item : m_data.itemsOf(taskId))
        items.append(demowire::item(item));
    return ok(items);
}

DemoResponse DemoApi::updateTask(qint64 taskId, const QJsonObject &body)
{
    DemoTask *task = m_data.task(taskId);
    if (!task)
        return notFound();
    const auto status = integer(body.value(QLatin1String("task_status_id")));
    const auto updater = integer(body.value(QLatin1String("updater_user_id")));
    std::optional<qint64> assignee;
    if (!status || *status < 1 || *status > kTaskStatusCount)
        return badRequest(QStringLiteral("task_status_id must be 1 to 6"));
    if (!updater || !m_data.user(*updater))
        return badRequest(QStringLiteral("updater_user_id must name a known user"));
    if (!optionalField(body, "assigned_user_id", assignee) || (assignee && !m_data.user(*assignee)))
        return badRequest(QStringLiteral("assigned_user_id must name a known user"));

    task->taskStatusId = static_cast<int>(*status);
    task->updaterUserId = *updater;
    if (assignee)
        task->assignedUserId = *assignee;
    task->dateUpdated = m_clock();
    return ok(taskJson(*task));
}

DemoResponse DemoApi::updateItems(const QJsonObject &body)
{
    const auto taskId = integer(body.value(QLatin1String("task_id")));
    const auto updater = integer(body.value(QLatin1String("updater_user_id")));
    const QJsonValue itemsValue = body.value(QLatin1String("items"));
    if (!taskId || !updater || !itemsValue.isArray())
        return badRequest(QStringLiteral("task_id, updater_user_id and items are required"));
    DemoTask *task = m_data.task(*taskId);
    if (!task)
        return notFound();
    if (!m_data.user(*updater))
        return badRequest(QStringLiteral("updater_user_id must name a known user"));

    struct Change
    {
        DemoItem *item;
        int status;
        std::optional<QString> text;
        std::optional<QString> mediaPath;
    };
    QList<Change> changes;
    for (const QJsonValue &entry : itemsValue.toArray()) {
        const QJsonObject object = entry.toObject();
        const auto id = integer(object.value(QLatin1String("id")));
        const auto status = integer(object.value(QLatin1String("item_status_id")));
        Change change{id ? m_data.item(*id) : nullptr, 0, {}, {}};
        if (!change.item || change.item->taskId != *taskId)
            return badRequest(QStringLiteral("Every item must belong to the task"));
        if (!status || *status < 1 || *status > 3)
            return badRequest(QStringLiteral("item_status_id must be 1, 2 or 3"));
        change.status = static_cast<int>(*status);
        if (!optionalField(object, "text", change.text) || !optionalField(object, "media_path", change.mediaPath))
            return badRequest(QStringLiteral("text and media_path must be strings or null"));
        changes.append(change);
    }
    if (changes.isEmpty())
        return badRequest(QStringLiteral("No items to update"));

    const QDateTime now = m_clock();
    QJsonArray echoed;
    for (const Change &change : std::as_const(changes)) {
        change.item->itemStatusId = change.status;
        change.item->dateUpdated = now;
        const bool hasText = change.text && !change.text->isEmpty();
        if (hasText || change.mediaPath) {
            DemoComment comment;
            comment.id = m_data.nextCommentId();
            comment.taskId = *taskId;
            comment.text = hasText ? change.text : std::nullopt;
            comment.userId = *updater;
            comment.dateCreated = now;
            comment.itemId = change.item->id;
            comment.isIncident = change.status == 2;
            if (change.mediaPath)
                comment.media.append({*change.mediaPath, now, comment.id});
            m_data.comments.append(comment);
        }
        echoed.append(QJsonObject{
            {"id", change.item->id},
            {"item_status_id", change.status},
            {"updated", true},
            {"date_updated", demowire::serverDate(now)},
        });
    }
    task->updaterUserId = *updater;
    task->dateUpdated = now;
    return ok(QJsonObject{{"task_id", *taskId}, {"updater_user_id", *updater}, {"items", echoed}});
}

DemoResponse DemoApi::commentsOf(qint64 taskId) const
{
    if (!m_data.task(taskId))
        return notFound();
    QJsonArray comments;
    for (const DemoComment &comment : m_data.commentsOf(taskId))
        comments.append(demowire::comment(comment, m_data.user(comment.userId)));
    return ok(comments);
}

DemoResponse DemoApi::postComment(const QJsonObject &body)
{
    const auto taskId = integer(body.value(QLatin1String("task_id")));
    const auto userId = integer(body.value(QLatin1String("user_id")));
    if (!taskId || !userId)
        return badRequest(QStringLiteral("task_id and user_id are required"));
    if (!m_data.task(*taskId))
        return notFound();
    if (!m_data.user(*userId))
        return badRequest(QStringLiteral("user_id must name a known user"));

    DemoComment comment;
    std::optional<qint64> dateCreated;
    std::optional<QString> mediaPath;
    if (!optionalField(body, "text", comment.text) || !optionalField(body, "item_id", comment.itemId)
        || !optionalField(body, "date_created", dateCreated) || !optionalField(body, "media_path", mediaPath))
        return badRequest(QStringLiteral("text, item_id, date_created or media_path has the wrong type"));
    if (comment.itemId) {
        const DemoItem *item = m_data.item(*comment.itemId);
        if (!item || item->taskId != *taskId)
            return badRequest(QStringLiteral("item_id must name an item of the task"));
    }
    const QJsonValue incident = body.value(QLatin1String("is_incident"));
    if (!incident.isUndefined() && !incident.isNull() && !incident.isBool())
        return badRequest(QStringLiteral("is_incident must be a boolean"));

    comment.id = m_data.nextCommentId();
    comment.taskId = *taskId;
    comment.userId = *userId;
    comment.isIncident = incident.toBool(false);
    comment.dateCreated = dateCreated ? QDateTime::fromMSecsSinceEpoch(*dateCreated, Qt::UTC) : m_clock();
    if (mediaPath)
        comment.media.append({*mediaPath, comment.dateCreated, comment.id});
    m_data.comments.append(comment);
    return ok();
}

DemoResponse DemoApi::signInRoute(const QJsonObject &body)
{
    const auto userId = integer(body.value(QLatin1String("userId")));
    if (!userId)
        return badRequest(QStringLiteral("userId is required"));
    const DemoUser *user = m_data.user(*userId);
    if (!user || !user->canSignIn)
        return fail(401, QStringLiteral("Unknown user"));

    QJsonArray assets;
    for (const DemoUser &entry : std::as_const(m_data.users))
        assets.append(demowire::asset(entry));
    return ok(QJsonObject{{"token", issueToken(*userId)}, {"userId", *userId}, {"assets", assets}});
}

DemoResponse DemoApi::upload(const QUrlQuery &query, const QByteArray &bytes)
{
    const QString name = query.queryItemValue(QStringLiteral("fileName"), QUrl::FullyDecoded);
    if (!isSafeFileName(name))
        return badRequest(QStringLiteral("fileName must be a plain file name"));
    const auto image = demopictures::decode(bytes);
    if (!image)
        return badRequest(QStringLiteral("The body is not a picture"));

    // JPEG bytes are kept as they came; other formats are stored as JPEG.
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    const bool isJpeg = QImageReader::imageFormat(&buffer) == "jpeg";
    QByteArray stored = isJpeg ? bytes : demopictures::encodeJpeg(*image);
    if (stored.isEmpty())
        return fail(500, QStringLiteral("The picture could not be stored"));

    const QString path = kUploadFolder + name;
    m_data.pictures.insert(path, stored);
    m_data.thumbnails.insert(path, demopictures::encodeJpeg(demopictures::thumbnailOf(*image)));
    return ok(QJsonObject{{"path", path}});
}

DemoResponse DemoApi::file(const QString &path)
{
    const auto jpeg = [](const QByteArray &bytes) { return DemoResponse{200, bytes, "image/jpeg"}; };
    if (path.startsWith(kThumbnailPrefix)) {
        const QString picture = path.mid(kThumbnailPrefix.size());
        if (const auto found = m_data.thumbnails.constFind(picture); found != m_data.thumbnails.cend())
            return jpeg(*found);
        const auto source = m_data.pictures.constFind(picture);
        if (source == m_data.pictures.cend())
            return DemoResponse{404, {}, "text/plain"};
        const auto image = demopictures::decode(*source);
        if (!image)
            return DemoResponse{404, {}, "text/plain"};
        const QByteArray thumbnail = demopictures::encodeJpeg(demopictures::thumbnailOf(*image));
        m_data.thumbnails.insert(picture, thumbnail);
        return jpeg(thumbnail);
    }
    const auto found = m_data.pictures.constFind(path);
    if (found == m_data.pictures.cend())
        return DemoResponse{404, {}, "text/plain"};
    return jpeg(*found);
}

std::optional<qint64> DemoApi::tokenUser(const QByteArray &authorization) const
{
    static const QByteArray scheme("Bearer ");
    if (!authorization.startsWith(scheme))
        return std::nullopt;
    const auto found = m_tokens.constFind(QString::fromUtf8(authorization.mid(scheme.size()).trimmed()));
    if (found == m_tokens.cend())
        return std::nullopt;
    return *found;
}

QString DemoApi::issueToken(qint64 userId)
{
    QByteArray bytes(24, Qt::Uninitialized);
    QRandomGenerator::system()->fillRange(reinterpret_cast<quint32 *>(bytes.data()), bytes.size() / 4);
    const QString token
        = QString::fromLatin1(bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
    m_tokens.insert(token, userId);
    return token;
}

QJsonObject DemoApi::taskJson(const DemoTask &task) const
{
    return demowire::task(task, m_data.itemCounts(task.id));
}

} // namespace ravelin
