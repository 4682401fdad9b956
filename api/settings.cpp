#include "api/settings.h"

#include "api/apiqueue.h"

#include <QJsonArray>

#include <algorithm>

namespace ravelin {

namespace {

template<class Definition>
Definition decodeDefinition(const json::Value &value)
{
    const json::Object o = value.toObject();
    Definition d;
    d.id = o.int64("id");
    d.name = o.string("name");
    return d;
}

template<class Definition>
QJsonObject encodeDefinition(const Definition &d)
{
    return QJsonObject{{QStringLiteral("id"), d.id}, {QStringLiteral("name"), d.name}};
}

template<class Definition>
QList<Definition> decodeDefinitions(const json::Object &o, std::string_view key)
{
    return o.value(key).toArray().map<Definition>(&decodeDefinition<Definition>);
}

template<class Definition>
QJsonArray encodeDefinitions(const QList<Definition> &list)
{
    QJsonArray out;
    for (const auto &d : list)
        out.append(encodeDefinition(d));
    return out;
}

Settings &currentSettings()
{
    static Settings s_current = Settings::defaults();
    return s_current;
}

// The api queue's copy of the task categories; touched on the queue only.
QList<TaskCategoryDefinition> &queueCategoryList()
{
    static QList<TaskCategoryDefinition> s_categories = Settings::defaults().taskCategory;
    return s_categories;
}

} // namespace

TaskStatusDefinition TaskStatusDefinition::decode(const json::Value &v)
{
    return decodeDefinition<TaskStatusDefinition>(v);
}
QJsonObject TaskStatusDefinition::encode() const
{
    return encodeDefinition(*this);
}
ItemStatusDefinition ItemStatusDefinition::decode(const json::Value &v)
{
    return decodeDefinition<ItemStatusDefinition>(v);
}
QJsonObject ItemStatusDefinition::encode() const
{
    return encodeDefinition(*this);
}
TaskCategoryDefinition TaskCategoryDefinition::decode(const json::Value &v)
{
    return decodeDefinition<TaskCategoryDefinition>(v);
}
QJsonObject TaskCategoryDefinition::encode() const
{
    return encodeDefinition(*this);
}

Settings Settings::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    Settings s;
    s.itemStatus = decodeDefinitions<ItemStatusDefinition>(o, "itemStatus");
    s.taskStatus = decodeDefinitions<TaskStatusDefinition>(o, "taskStatus");
    s.taskCategory = decodeDefinitions<TaskCategoryDefinition>(o, "taskCategory");
    return s;
}

QJsonObject Settings::encode() const
{
    return QJsonObject{{QStringLiteral("itemStatus"), encodeDefinitions(itemStatus)},
                       {QStringLiteral("taskStatus"), encodeDefinitions(taskStatus)},
                       {QStringLiteral("taskCategory"), encodeDefinitions(taskCategory)}};
}

Settings Settings::defaults()
{
    return Settings{{}, {}, {TaskCategoryDefinition{0, QStringLiteral("All")}}};
}

const Settings &Settings::current()
{
    return currentSettings();
}

void Settings::setCurrent(Settings settings)
{
    currentSettings() = std::move(settings);
    ApiQueue::shared().async([categories = currentSettings().taskCategory] { queueCategoryList() = categories; });
}

const QList<TaskCategoryDefinition> &Settings::queueCategories()
{
    return queueCategoryList();
}

void Settings::receivedOnQueue(const Settings &settings)
{
    queueCategoryList() = settings.taskCategory;
}

Settings Settings::fromReceived(const Settings &received)
{
    Settings s = received;
    std::stable_sort(s.taskCategory.begin(), s.taskCategory.end(),
                     [](const TaskCategoryDefinition &a, const TaskCategoryDefinition &b) { return a.id < b.id; });
    s.taskCategory.prepend(TaskCategoryDefinition{0, QStringLiteral("All")});
    return s;
}

SettingsAndConstantsResponse SettingsAndConstantsResponse::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    SettingsAndConstantsResponse r;
    r.success = o.boolean("success");
    r.data = Settings::decode(o.value("data"));
    return r;
}

TokenResponse TokenResponse::decode(const json::Value &value)
{
    const json::Object o = value.toObject();
    TokenResponse r;
    r.success = o.boolean("success");
    r.data = o.string("data");
    return r;
}

} // namespace ravelin
