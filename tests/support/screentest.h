#pragma once

#include "host/notificationcenter.h"
#include "support/fixtures.h"
#include "support/hostfixture.h"

#include <atomic>
#include <memory>
#include <thread>

// What the tests of the screens share: the paths of worker 7's tasks and of the
// task the items and comments screens show, and a test object that keeps a
// harness, a notification centre, a picker and the host under test.
namespace ravelin::test {

inline constexpr int timeoutMs = 10000;
inline constexpr qint64 taskId = 8;
inline const QString tasksPath = QStringLiteral("/api/tasks/assigned-user/7");
inline const QString itemsPath = QStringLiteral("/api/items/taskId/8");
inline const QString commentsPath = QStringLiteral("/api/task/8/comments");

// A handler whose answer waits until `release` is set, five seconds at the most.
inline TestServer::Handler heldAnswer(std::shared_ptr<std::atomic<bool>> release, CannedResponse response)
{
    return [release, response](const RecordedRequest &) {
        for (int i = 0; i < 500 && !release->load(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return response;
    };
}

class ScreenTest : public QObject
{
protected:
    // A new harness (m_api) whose session has these task categories.
    void startHarness(QList<TaskCategoryDefinition> categories = {{3, "Pumps"}})
    {
        m_api = std::make_unique<ApiHarness>(std::move(categories));
    }
    // Worker 7's tasks as the server answers them from now on.
    void serveTasks(const QJsonArray &tasks) { m_api->server.on("GET", tasksPath, CannedResponse{200, answer(tasks)}); }
    // Worker 7's only task: "Pump station" (taskId), in progress, high priority, of the Pumps.
    void servePumpStation() { serveTasks({taskJson(taskId, "Pump station", 4, 1, "2026-11-01T08:00:00.000Z", 3)}); }
    // Shows a new host (m_host) with the test's picker and the given other inputs.
    RavelinNavVC &openHost(RavelinNavVC::Environment environment = {})
    {
        environment.imagePicker = &m_picker;
        m_host = makeHost(*m_api, m_center, HostOptions{std::move(environment)});
        return *m_host;
    }
    // The host first, then the harness it works on.
    void closeHost()
    {
        m_host.reset();
        m_api.reset();
    }

    std::unique_ptr<ApiHarness> m_api;
    NotificationCenter m_center;
    TestPicker m_picker;
    std::unique_ptr<RavelinNavVC> m_host;
};

} // namespace ravelin::test
