#pragma once

#include "api/json.h"

#include <QJsonObject>
#include <QList>
#include <QString>

namespace ravelin {

// The three definition records share one shape (id, name) but stay distinct types.
struct TaskStatusDefinition
{
    qint64 id = 0;
    QString name;

    [[nodiscard]] static TaskStatusDefinition decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;
    friend bool operator==(const TaskStatusDefinition &, const TaskStatusDefinition &) = default;
};

struct ItemStatusDefinition
{
    qint64 id = 0;
    QString name;

    [[nodiscard]] static ItemStatusDefinition decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;
    friend bool operator==(const ItemStatusDefinition &, const ItemStatusDefinition &) = default;
};

struct TaskCategoryDefinition
{
    qint64 id = 0;
    QString name;

    [[nodiscard]] static TaskCategoryDefinition decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;
    friend bool operator==(const TaskCategoryDefinition &, const TaskCategoryDefinition &) = default;
};

// The deployment's constants: item statuses, task statuses and task categories.
struct Settings
{
    QList<ItemStatusDefinition> itemStatus;
    QList<TaskStatusDefinition> taskStatus;
    QList<TaskCategoryDefinition> taskCategory;

    [[nodiscard]] static Settings decode(const json::Value &value);
    [[nodiscard]] QJsonObject encode() const;
    friend bool operator==(const Settings &, const Settings &) = default;

    // The settings before any answer: no statuses and the single category 0 "All".
    [[nodiscard]] static Settings defaults();

    // The one process-wide value of the session. Read and written on the main thread.
    [[nodiscard]] static const Settings &current();
    static void setCurrent(Settings settings);

    // Answers are decoded on the api queue, which keeps its own copy of the task
    // categories that tasks are looked up in: the session's, as last set with
    // setCurrent() or received on the queue, in the order in which the two
    // reached the queue. So a task answer decoded after the settings answer
    // sees the received categories, even before the main thread has taken them.
    // Both on the api queue only.
    [[nodiscard]] static const QList<TaskCategoryDefinition> &queueCategories();
    static void receivedOnQueue(const Settings &settings);

    // What the session keeps of a received answer: statuses as received, categories
    // sorted by id (stable) behind the entry 0 "All".
    [[nodiscard]] static Settings fromReceived(const Settings &received);
};

// Answer of "api/settings-constants".
struct SettingsAndConstantsResponse
{
    bool success = false;
    Settings data;

    [[nodiscard]] static SettingsAndConstantsResponse decode(const json::Value &value);
};

// Answer of "api/regenerate-token": the new bearer token under "data".
struct TokenResponse
{
    bool success = false;
    QString data;

    [[nodiscard]] static TokenResponse decode(const json::Value &value);
};

} // namespace ravelin
