#pragma once

#include "api/clock.h"
#include "api/datecoding.h"
#include "support/apiharness.h"
#include "tasks/task.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QTest>

#include <iterator>
#include <memory>
#include <optional>
#include <type_traits>

// Wire-form JSON of the server's records, for scripting the test server.
namespace ravelin::test {

inline QJsonObject taskJson(qint64 id, const QString &name, int statusId, int priority = 2,
                            const QString &dateCreated = QStringLiteral("2026-11-01T08:00:00.000Z"),
                            qint64 categoryId = 0, const QJsonArray &itemsCount = {})
{
    QJsonObject o{{"id", id},
                  {"name", name},
                  {"description", name + QStringLiteral(" description")},
                  {"latitude", 59.33},
                  {"longitude", 18.06},
                  {"ownerId", 1},
                  {"ownerAssetName", "Depot North"},
                  {"assignedUserId", 7},
                  {"updaterUserId", QJsonValue::Null},
                  {"dateScheduled", QJsonValue::Null},
                  {"dateCreated", dateCreated},
                  {"taskStatusId", statusId},
                  {"taskCategoryId", categoryId},
                  {"priority", priority},
                  {"updated", false}};
    if (!itemsCount.isEmpty())
        o.insert("itemsCount", itemsCount);
    return o;
}

inline QJsonObject itemJson(qint64 id, qint64 taskId, const QString &name, int statusId,
                            const std::optional<QString> &qrCode = std::nullopt)
{
    QJsonObject o{{"id", id},
                  {"taskId", taskId},
                  {"name", name},
                  {"details", name + QStringLiteral(" details")},
                  {"isAudit", "0"},
                  {"dateCreated", "2026-11-01T08:00:00.000Z"},
                  {"itemStatusId", statusId}};
    if (qrCode)
        o.insert("qrCode", *qrCode);
    return o;
}

// With a picture per media path, made when the comment was.
inline QJsonObject commentJson(const QString &text, const QString &dateCreated,
                               std::optional<qint64> itemId = std::nullopt, bool incident = false,
                               const QStringList &media = {})
{
    QJsonObject o{{"text", text},
                  {"userId", 7},
                  {"dateCreated", dateCreated},
                  {"itemId", itemId ? QJsonValue(*itemId) : QJsonValue(QJsonValue::Null)},
                  {"isIncident", incident ? "1" : "0"},
                  {"assetName", "Ann Rivers"},
                  {"assetIcon", "people_01"}};
    QJsonArray pictures;
    for (const QString &path : media)
        pictures.append(QJsonObject{{"path", path}, {"dateCreated", dateCreated}, {"commentId", 1}});
    if (!media.isEmpty())
        o.insert("media", pictures);
    return o;
}

// A moment in the server's date form.
inline QString serverDate(TimePoint when)
{
    return formatServerDate(toDateTime(when));
}

inline QByteArray answer(const QJsonValue &data)
{
    return QJsonDocument(QJsonObject{{"success", true}, {"data", data}}).toJson(QJsonDocument::Compact);
}

// What `f` makes of each element of `list`, in order.
template<class List, class F>
auto mapped(const List &list, F f)
{
    QList<std::decay_t<decltype(f(*std::begin(list)))>> out;
    for (const auto &element : list)
        out.append(f(element));
    return out;
}

// "first-last" of each range of rows a spy on rowsInserted or rowsRemoved heard.
inline QStringList rowRanges(const QSignalSpy &spy)
{
    return mapped(spy, [](const QList<QVariant> &signal) {
        return QStringLiteral("%1-%2").arg(signal.at(1).toInt()).arg(signal.at(2).toInt());
    });
}

// For each of `cases`, of which there are `count`: its number (`toNumber`) reads back
// (`fromNumber`), its text (`toText`) reads back (`fromText`), and texts match
// exactly, so that lower case, one letter short, a trailing blank or no text give none.
template<class E, class ToNumber, class FromNumber>
void checkRoundTrips(const QList<E> &cases, qsizetype count, ToNumber toNumber, FromNumber fromNumber,
                     QString (*toText)(E), std::optional<E> (*fromText)(const QString &))
{
    QCOMPARE(cases.size(), count);
    for (const E value : cases) {
        QCOMPARE(fromNumber(toNumber(value)), value);
        const QString text = toText(value);
        QCOMPARE(fromText(text), std::optional(value));
        for (const QString &near : {text.toLower(), text.chopped(1), text + QLatin1Char(' '), QString()})
            QVERIFY2(!fromText(near), qPrintable(near));
    }
}

// What the tests of a view model keep from init() to cleanup(): a harness
// (m_api), task 5 (m_task) and the view model under test (m_vm).
template<class VM>
class ViewModelTest : public QObject
{
protected:
    static constexpr int timeoutMs = 10000;

    // A new harness, whose session has these task categories, and a new task 5 without items.
    void startHarness(QList<TaskCategoryDefinition> categories = {})
    {
        m_api = std::make_unique<ApiHarness>(std::move(categories));
        m_task = std::make_shared<Task>();
        m_task->id = 5;
    }
    // The view model first, then the harness it works on.
    void closeViewModel()
    {
        m_vm.reset();
        m_api.reset();
    }

    std::unique_ptr<ApiHarness> m_api;
    TaskPtr m_task;
    std::unique_ptr<VM> m_vm;
};

} // namespace ravelin::test
