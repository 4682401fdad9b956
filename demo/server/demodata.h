#pragma once

#include "demo/server/democomment.h"
#include "demo/server/demodefinition.h"
#include "demo/server/demoitem.h"
#include "demo/server/demotask.h"
#include "demo/server/demouser.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>

#include <array>

namespace ravelin {

// Everything the demo deployment knows: its people, constants, tasks with
// their checkpoints, comment threads and stored pictures. A plain record:
// the demo API keeps one copy behind its lock and changes it as requests come.
struct DemoData
{
    QList<DemoUser> users;
    QList<DemoDefinition> itemStatuses;
    QList<DemoDefinition> taskStatuses;
    QList<DemoDefinition> taskCategories;
    QList<DemoTask> tasks;
    QList<DemoItem> items;
    QList<DemoComment> comments;
    QHash<QString, QByteArray> pictures; // path -> JPEG bytes, served under "/files/"
    QHash<QString, QByteArray> thumbnails; // path -> JPEG bytes, served under "/files/thumbnails/thumb_"

    // The seeded deployment: three field workers and the dispatch desk, some
    // thirty tasks over the six statuses dated in the weeks before `now`, their
    // checkpoints (some with QR codes), comment threads and a few pictures.
    // With `tasksPerWorker` above the seeded ten, every field worker gets that
    // many tasks: the rest are routine tasks of the same kinds with three
    // checkpoints each and no comments (a deployment at scale).
    [[nodiscard]] static DemoData seeded(const QDateTime &now, int tasksPerWorker = 0);

    // Every field worker's first task in progress at scale: `items` checkpoints
    // in all (when that is more than it has) and a thread of `comments`
    // comments in all, every fifth with a picture of its own path, the newest
    // ten minutes before `now`. Zero leaves a list as seeded.
    void scaleFirstTasksInProgress(int items, int comments, const QDateTime &now);

    // The deployment's constants alone, without people, tasks or pictures.
    [[nodiscard]] static DemoData constantsOnly();

    [[nodiscard]] const DemoUser *user(qint64 id) const;
    [[nodiscard]] DemoTask *task(qint64 id);
    [[nodiscard]] const DemoTask *task(qint64 id) const;
    [[nodiscard]] DemoItem *item(qint64 id);
    [[nodiscard]] const DemoItem *item(qint64 id) const;
    [[nodiscard]] QList<DemoItem> itemsOf(qint64 taskId) const;
    [[nodiscard]] QList<DemoComment> commentsOf(qint64 taskId) const;

    // Items of a task per status: [0] completed (1), [1] incidents (2), [2] open (3).
    [[nodiscard]] std::array<int, 3> itemCounts(qint64 taskId) const;
    // The same for every task at once, in one pass over the items.
    [[nodiscard]] QHash<qint64, std::array<int, 3>> itemCountsByTask() const;

    [[nodiscard]] qint64 nextCommentId() const;
};

} // namespace ravelin
