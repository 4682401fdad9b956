#include "fuzz/decodeentry.h"

#include "api/apidata.h"
#include "api/datecoding.h"
#include "api/networkmanager.h"
#include "api/settings.h"
#include "comments/taskscommentsresponse.h"
#include "items/itemsresponse.h"
#include "items/itemsupdateresponse.h"
#include "tasks/tasksresponse.h"
#include "tasks/tasksupdateresponse.h"
#include "tests/support/fatalerrortrap.h"

#include <QDateTime>
#include <QStringList>

#include <algorithm>
#include <string_view>

namespace ravelin::fuzz {

namespace {

const QList<TaskCategoryDefinition> &sessionCategories()
{
    static const QList<TaskCategoryDefinition> categories{{0, QStringLiteral("All")},
                                                          {1, QStringLiteral("Inspection")},
                                                          {2, QStringLiteral("Maintenance")},
                                                          {3, QStringLiteral("Safety")}};
    return categories;
}

json::Options answerOptions(const QList<TaskCategoryDefinition> &categories)
{
    json::Options options = NetworkManager::decodingOptions();
    options.taskCategories = &categories;
    return options;
}

// Decodes an answer as a request does; `check` looks at a decoded value.
template<class T, class Check>
Verdict decodeAnswer(const QByteArray &body, const QList<TaskCategoryDefinition> &categories, Check check)
{
    const test::FatalErrorTrap trap;
    try {
        const Result<T> result = NetworkManager::decodeBody<T>(body, answerOptions(categories));
        if (!result.isSuccess())
            return Verdict{Outcome::rejected, std::nullopt};
        return Verdict{Outcome::decoded, check(result.value())};
    } catch (const test::FatalErrorRaised &) {
        return Verdict{Outcome::stopped, std::nullopt};
    }
}

template<class T>
Verdict decodeAnswer(const QByteArray &body)
{
    return decodeAnswer<T>(body, sessionCategories(), [](const T &) { return std::optional<QString>(); });
}

std::optional<QString> checkCategories(const QList<TaskPtr> &tasks)
{
    for (const TaskPtr &task : tasks) {
        if (!sessionCategories().contains(task->taskCategory))
            return QStringLiteral("task %1 has category %2, which the session does not have")
                .arg(task->id)
                .arg(task->taskCategory.id);
    }
    return std::nullopt;
}

// A task list decodes against the session's categories; the same bytes must
// stop the process when the session has no categories at all.
template<class T>
Verdict decodeTasks(const QByteArray &body, QList<TaskPtr> (*tasks)(const T &))
{
    Verdict verdict
        = decodeAnswer<T>(body, sessionCategories(), [tasks](const T &value) { return checkCategories(tasks(value)); });
    if (verdict.outcome != Outcome::decoded || verdict.violation)
        return verdict;
    static const QList<TaskCategoryDefinition> none;
    qsizetype decodedCount = 0;
    const Verdict again = decodeAnswer<T>(body, none, [&decodedCount, tasks](const T &value) {
        decodedCount = tasks(value).size();
        return std::optional<QString>();
    });
    if (again.outcome == Outcome::decoded && decodedCount > 0)
        verdict.violation = QStringLiteral("%1 tasks decoded without any session category").arg(decodedCount);
    else if (again.outcome == Outcome::rejected)
        verdict.violation = QStringLiteral("a task list that decodes was rejected without session categories");
    return verdict;
}

Verdict decodeStoredSession(const QByteArray &bytes)
{
    const auto session = APIData::fromStoredBytes(bytes);
    if (!session)
        return Verdict{Outcome::rejected, std::nullopt};
    // What is decoded is stored again as it is after a token regeneration.
    const auto again = APIData::fromStoredBytes(session->encode());
    if (!again || again->baseURL != session->baseURL || again->tokenString != session->tokenString)
        return Verdict{Outcome::decoded, QStringLiteral("the stored session does not survive being stored again")};
    return Verdict{Outcome::decoded, std::nullopt};
}

// Qt's own ISO parser, which accepts a superset of the server's form, must read
// an accepted date as the same moment (for four-digit years Qt handles alike).
Verdict decodeServerDate(QByteArrayView bytes)
{
    const std::string_view text(bytes.data(), std::size_t(bytes.size()));
    const auto msecs = parseServerDateMSecs(text);
    if (!msecs)
        return Verdict{Outcome::rejected, std::nullopt};
    const auto date = parseServerDate(text);
    if (!date || date->toMSecsSinceEpoch() != *msecs)
        return Verdict{Outcome::decoded, QStringLiteral("the two date parsers disagree")};
    const int year = QByteArrayView(bytes.data(), 4).toInt();
    if (year >= 1000 && year <= 9998) {
        const QDateTime qt = QDateTime::fromString(QString::fromLatin1(bytes), Qt::ISODateWithMs);
        if (!qt.isValid() || qt.toMSecsSinceEpoch() != *msecs)
            return Verdict{
                Outcome::decoded,
                QStringLiteral("read as %1 ms, Qt reads %2")
                    .arg(*msecs)
                    .arg(qt.isValid() ? QString::number(qt.toMSecsSinceEpoch()) : QStringLiteral("nothing"))};
    }
    return Verdict{Outcome::decoded, std::nullopt};
}

} // namespace

const QList<DecodeEntry> &allEntries()
{
    using E = DecodeEntry;
    static const QList<DecodeEntry> entries{E::tasksAnswer,       E::itemsAnswer,   E::commentsAnswer,
                                            E::settingsAnswer,    E::tokenAnswer,   E::taskUpdateAnswer,
                                            E::itemsUpdateAnswer, E::storedSession, E::serverDate};
    return entries;
}

QString entryName(DecodeEntry entry)
{
    switch (entry) {
    case DecodeEntry::tasksAnswer: return QStringLiteral("tasks_answer");
    case DecodeEntry::itemsAnswer: return QStringLiteral("items_answer");
    case DecodeEntry::commentsAnswer: return QStringLiteral("comments_answer");
    case DecodeEntry::settingsAnswer: return QStringLiteral("settings_answer");
    case DecodeEntry::tokenAnswer: return QStringLiteral("token_answer");
    case DecodeEntry::taskUpdateAnswer: return QStringLiteral("task_update_answer");
    case DecodeEntry::itemsUpdateAnswer: return QStringLiteral("items_update_answer");
    case DecodeEntry::storedSession: return QStringLiteral("stored_session");
    case DecodeEntry::serverDate: return QStringLiteral("server_date");
    }
    return {};
}

std::optional<DecodeEntry> entryNamed(const QString &name)
{
    const auto found
        = std::ranges::find_if(allEntries(), [&name](DecodeEntry entry) { return entryName(entry) == name; });
    return found == allEntries().end() ? std::nullopt : std::optional(*found);
}

QString outcomeName(Outcome outcome)
{
    static const QStringList names{QStringLiteral("decoded"), QStringLiteral("rejected"), QStringLiteral("stopped")};
    return names.at(int(outcome));
}

Verdict decode(DecodeEntry entry, QByteArrayView bytes)
{
    // The answer is read in place; the JSON reader copies it into its own padded buffer.
    const QByteArray body = QByteArray::fromRawData(bytes.data(), bytes.size());
    switch (entry) {
    case DecodeEntry::tasksAnswer:
        return decodeTasks<TasksResponse>(body, [](const TasksResponse &r) { return r.data; });
    case DecodeEntry::taskUpdateAnswer:
        return decodeTasks<TasksUpdateResponse>(body,
                                                [](const TasksUpdateResponse &r) { return QList<TaskPtr>{r.task}; });
    case DecodeEntry::itemsAnswer:
        return decodeAnswer<ItemsResponse>(
            body, sessionCategories(), [](const ItemsResponse &r) -> std::optional<QString> {
                for (const ItemPtr &item : r.data) {
                    if (item->isQRMapped)
                        return QStringLiteral("item %1 decoded as already matched by a scan").arg(item->id);
                }
                return std::nullopt;
            });
    case DecodeEntry::commentsAnswer:
        return decodeAnswer<TasksCommentsResponse>(
            body, sessionCategories(), [](const TasksCommentsResponse &r) -> std::optional<QString> {
                for (const CommentPtr &comment : r.data) {
                    if (comment->itemIds.size() > 1 || !comment->assetIcon.startsWith(QLatin1String("list_pin_")))
                        return QStringLiteral("a comment of user %1 decoded with "
                                              "several items or a bare icon")
                            .arg(comment->userId);
                }
                return std::nullopt;
            });
    case DecodeEntry::settingsAnswer:
        // The session keeps the answer as the navigation host does.
        return decodeAnswer<SettingsAndConstantsResponse>(
            body, sessionCategories(), [](const SettingsAndConstantsResponse &r) -> std::optional<QString> {
                const Settings kept = Settings::fromReceived(r.data);
                if (kept.taskCategory.size() != r.data.taskCategory.size() + 1 || kept.taskCategory.first().id != 0)
                    return QStringLiteral("the kept settings lost a category or the leading All");
                return std::nullopt;
            });
    case DecodeEntry::tokenAnswer: return decodeAnswer<TokenResponse>(body);
    case DecodeEntry::itemsUpdateAnswer: return decodeAnswer<ItemsUpdateResponse>(body);
    case DecodeEntry::storedSession: return decodeStoredSession(body);
    case DecodeEntry::serverDate: return decodeServerDate(bytes);
    }
    return {};
}

} // namespace ravelin::fuzz
