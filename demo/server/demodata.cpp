#include "demo/server/demodata.h"

#include "demo/server/demopictures.h"

#include <algorithm>

namespace ravelin {

namespace {

constexpr qint64 kDispatchId = 4;
constexpr qint64 kHour = 60 * 60;
constexpr qint64 kDay = 24 * kHour;
constexpr int kMaxPictures = 6;

// Task category ids.
constexpr qint64 inspection = 1;
constexpr qint64 maintenance = 2;
constexpr qint64 meterReading = 3;
constexpr qint64 repair = 4;
constexpr qint64 safetyCheck = 5;

// Task status ids.
constexpr int unassigned = 1;
constexpr int assigned = 2;
constexpr int acknowledged = 3;
constexpr int inProgress = 4;
constexpr int blocked = 5;
constexpr int completed = 6;

struct Checkpoint
{
    const char *name;
    const char *details;
    bool hasQrCode;
    bool isAudit;
};

struct Checklist
{
    const char *qrPrefix;
    std::array<Checkpoint, 5> checkpoints;
};

// One checklist per category, in category order.
const std::array<Checklist, 5> kChecklists{{
    {"CP-",
     {{{"Pressure gauge", "Read the inlet gauge and note any value outside 2 to 6 bar", true, false},
       {"Enclosure seals", "Check door seals and cable glands for moisture", false, false},
       {"Cathodic protection post", "Measure the pipe-to-soil potential at the test post", true, false},
       {"Access path", "Path clear of vegetation and debris", false, false},
       {"Warning signs", "Warning signs present and readable", false, true}}}},
    {"PM-",
     {{{"Pump bearings", "Grease the bearings and listen for noise while running", true, false},
       {"Strainer basket", "Remove, clean and refit the strainer basket", true, false},
       {"Drive belt", "Check the tension and wear of the drive belt", false, false},
       {"Gearbox oil", "Top up the gearbox oil if it is below the mark", false, false},
       {"Run test", "Run the pump for ten minutes and record the flow", false, true}}}},
    {"MT-",
     {{{"Main meter", "Record the reading of the main water meter", true, false},
       {"Sub-meter A", "Record sub-meter A in the plant room", true, false},
       {"Sub-meter B", "Record sub-meter B at the loading bay", true, false},
       {"Meter seals", "Check that every meter seal is intact", false, true},
       {"Meter pit cover", "Cover in place and not cracked", false, false}}}},
    {"VL-",
     {{{"Isolate section", "Close the valves upstream and downstream and tag them", true, false},
       {"Replace gasket", "Fit the new flange gasket and torque the bolts crosswise", false, false},
       {"Pressure test", "Hold the test pressure for 15 minutes without a drop", false, false},
       {"Restore supply", "Open the valves slowly and bleed the air", true, false},
       {"Site clean-up", "Remove old parts and leave the site tidy", false, true}}}},
    {"FS-",
     {{{"Fire extinguishers", "Check the pressure and the inspection tag of every extinguisher", true, false},
       {"Emergency lighting", "Test the emergency lights for 30 seconds", false, false},
       {"First-aid kit", "Check the contents against the list inside the lid", false, false},
       {"Gas detector", "Bump-test the fixed gas detector", true, false},
       {"Escape route", "Escape route clear and doors open freely", false, true}}}},
}};

struct Site
{
    const char *name;
    double latitude;
    double longitude;
};

const std::array<Site, 8> kSites{{
    {"Northfield pump station", 57.7361, 11.9802},
    {"Harbour Road valve chamber", 57.7048, 11.9373},
    {"Elm Street reservoir", 57.6893, 12.0121},
    {"Riverside treatment plant", 57.7202, 11.9517},
    {"Station 7 booster", 57.6745, 11.9268},
    {"Kestrel Lane substation", 57.7467, 12.0344},
    {"West Quay depot", 57.6981, 11.9015},
    {"Millbrook intake", 57.7590, 11.9958},
}};

struct TaskSeed
{
    qint64 assignee;
    int status;
    qint64 category;
    int priority;
    const char *work;
    int site;
    int daysAgo;
    bool scheduled;
};

const std::array<TaskSeed, 30> kTasks{{
    {1, inProgress, inspection, 1, "Quarterly inspection", 0, 3, true},
    {1, assigned, meterReading, 2, "Monthly meter readings", 2, 1, true},
    {1, blocked, repair, 0, "Replace flange gasket", 1, 6, false},
    {1, completed, maintenance, 2, "Pump maintenance", 4, 12, false},
    {1, acknowledged, safetyCheck, 1, "Safety walk-round", 3, 2, true},
    {1, unassigned, inspection, 3, "Cathodic protection survey", 7, 0, false},
    {1, completed, meterReading, 3, "Monthly meter readings", 6, 20, false},
    {1, inProgress, maintenance, 2, "Strainer cleaning", 0, 5, false},
    {1, completed, repair, 0, "Leak repair", 5, 27, false},
    {1, assigned, safetyCheck, 2, "Fire safety check", 6, 9, true},
    {2, inProgress, repair, 1, "Valve replacement", 1, 4, false},
    {2, assigned, inspection, 2, "Reservoir roof inspection", 2, 2, true},
    {2, completed, meterReading, 3, "Monthly meter readings", 3, 16, false},
    {2, blocked, maintenance, 1, "Booster pump overhaul", 4, 8, false},
    {2, acknowledged, meterReading, 2, "Meter readings before tariff change", 5, 1, true},
    {2, unassigned, safetyCheck, 2, "Gas detector check", 3, 0, false},
    {2, completed, inspection, 1, "Annual inspection", 7, 34, false},
    {2, inProgress, safetyCheck, 0, "Emergency lighting test", 6, 3, false},
    {2, completed, maintenance, 3, "Belt and bearing service", 0, 23, false},
    {2, assigned, repair, 1, "Repair pit cover", 2, 6, true},
    {3, inProgress, meterReading, 2, "Monthly meter readings", 1, 2, false},
    {3, assigned, maintenance, 1, "Pump maintenance", 7, 3, true},
    {3, blocked, inspection, 1, "Fence and gate inspection", 5, 10, false},
    {3, completed, safetyCheck, 2, "Fire safety check", 4, 14, false},
    {3, acknowledged, repair, 0, "Burst main repair", 0, 1, false},
    {3, unassigned, maintenance, 3, "Intake screen cleaning", 7, 0, false},
    {3, completed, repair, 2, "Hydrant repair", 6, 30, false},
    {3, inProgress, inspection, 2, "Chamber inspection", 1, 7, true},
    {3, completed, meterReading, 3, "Monthly meter readings", 2, 41, false},
    {3, acknowledged, safetyCheck, 1, "Confined space equipment check", 3, 4, false},
}};

// The opening line of the dispatch desk on every task that has been taken on.
const std::array<const char *, 5> kDispatchNotes{{
    "Please start with the checkpoints that carry a QR tag.",
    "Keys are in the lock box at the gate, code as usual.",
    "Customer reported low pressure in the area, keep an eye on it.",
    "Bring the spare gaskets from the depot, the last set was used up.",
    "Access only before 15:00, the site closes early this week.",
}};

const std::array<const char *, 5> kIncidentNotes{{
    "Flange bolts seized, cannot isolate the section without a new valve key.",
    "Reading outside the allowed range, photo attached.",
    "Water on the floor of the chamber, source not found yet.",
    "Seal broken on arrival, reported to dispatch.",
    "Part missing, need a replacement before I can go on.",
}};

const std::array<const char *, 4> kProgressNotes{{
    "On site, starting now.",
    "Half of the checkpoints done, continuing after lunch.",
    "Waiting for the contractor to open the gate.",
    "All readings within range so far.",
}};

QString taskName(const TaskSeed &seed)
{
    return QStringLiteral("%1 – %2").arg(QString::fromUtf8(seed.work),
                                         QString::fromUtf8(kSites.at(static_cast<size_t>(seed.site)).name));
}

QString taskDescription(const TaskSeed &seed, const QString &categoryName)
{
    return QStringLiteral("%1 at %2: %3. Go through every checkpoint in order and report anything unusual "
                          "with a note or a photo.")
        .arg(categoryName, QString::fromUtf8(kSites.at(static_cast<size_t>(seed.site)).name),
             QString::fromUtf8(seed.work).toLower());
}

// The status of checkpoint `index` of `count` on a task in `status`; `variant`
// picks one of a few patterns so that tasks differ.
int itemStatusFor(int status, int index, int count, int variant)
{
    switch (status) {
    case inProgress:
        if (index < count / 2)
            return (variant % 3 == 0 && index == 0) ? 2 : 1;
        return 3;
    case blocked:
        if (index == count / 2)
            return 2;
        return index < count / 2 ? 1 : 3;
    case completed: return (variant % 4 == 1 && index == count - 1) ? 2 : 1;
    default: return 3;
    }
}

} // namespace

DemoData DemoData::constantsOnly()
{
    DemoData data;
    data.itemStatuses = {{1, "Completed"}, {2, "Incidents"}, {3, "Open"}, {4, "All"}};
    data.taskStatuses = {{1, "Unassigned"},  {2, "Assigned"}, {3, "Acknowledged"},
                         {4, "In Progress"}, {5, "Blocked"},  {6, "Completed"}};
    data.taskCategories = {{inspection, "Inspection"},
                           {maintenance, "Maintenance"},
                           {meterReading, "Meter reading"},
                           {repair, "Repair"},
                           {safetyCheck, "Safety check"}};
    return data;
}

DemoData DemoData::seeded(const QDateTime &now, int tasksPerWorker)
{
    DemoData data = constantsOnly();
    data.users = {
        {1, "Ann Rivers", "people_01", true},
        {2, "Bo Lindqvist", "people_02", true},
        {3, "Chris Okafor", "people_03", true},
        {kDispatchId, "Dispatch Desk", "building_01", false},
    };

    // Whole minutes, so that the seeded dates read naturally.
    const QDateTime base = QDateTime::fromSecsSinceEpoch(now.toSecsSinceEpoch() / 60 * 60, Qt::UTC);
    const QDateTime latest = base.addSecs(-10 * 60);
    const auto before = [&latest](const QDateTime &moment) { return std::min(moment, latest); };

    qint64 itemId = 1;
    qint64 commentId = 1;
    int pictureCount = 0;
    const auto addPicture = [&](qint64 taskId) {
        const QString path = QStringLiteral("media/task-%1/photo-%2.jpg").arg(taskId).arg(pictureCount + 1);
        const QImage picture = demopictures::drawScene(pictureCount);
        data.pictures.insert(path, demopictures::encodeJpeg(picture));
        data.thumbnails.insert(path, demopictures::encodeJpeg(demopictures::thumbnailOf(picture)));
        ++pictureCount;
        return path;
    };

    for (size_t index = 0; index < kTasks.size(); ++index) {
        const TaskSeed &seed = kTasks.at(index);
        const int variant = static_cast<int>(index);
        const Site &site = kSites.at(static_cast<size_t>(seed.site));

        DemoTask task;
        task.id = 100 + static_cast<qint64>(index) + 1;
        task.name = taskName(seed);
        task.description = taskDescription(seed, data.taskCategories.at(seed.category - 1).name);
        task.latitude = site.latitude + 0.0007 * (variant % 5);
        task.longitude = site.longitude - 0.0005 * (variant % 3);
        task.ownerId = kDispatchId;
        task.ownerAssetName = QStringLiteral("Dispatch Desk");
        task.assignedUserId = seed.assignee;
        // Tasks are written during the working day; today's ones in the last few hours.
        task.dateCreated = seed.daysAgo == 0
            ? base.addSecs(-(1 + variant % 3) * kHour)
            : QDateTime(base.date().addDays(-seed.daysAgo), QTime(6, 30).addSecs(variant % 8 * 45 * 60), Qt::UTC);
        if (seed.scheduled)
            task.dateScheduled = QDateTime(task.dateCreated.date().addDays(2), QTime(8, 0), Qt::UTC);
        task.taskStatusId = seed.status;
        task.taskCategoryId = seed.category;
        task.priority = seed.priority;
        if (seed.status == assigned) {
            task.updaterUserId = kDispatchId;
            task.dateUpdated = before(task.dateCreated.addSecs(15 * 60));
        } else if (seed.status > assigned) {
            task.updaterUserId = seed.assignee;
            task.dateUpdated = before(task.dateCreated.addSecs((seed.daysAgo * kDay) / 2 + kHour));
        }

        const Checklist &checklist = kChecklists.at(static_cast<size_t>(seed.category - 1));
        const int count = static_cast<int>(checklist.checkpoints.size()) - variant % 3;
        qint64 incidentItem = 0;
        qint64 firstDoneItem = 0;
        for (int i = 0; i < count; ++i) {
            const Checkpoint &checkpoint = checklist.checkpoints.at(static_cast<size_t>(i));
            DemoItem item;
            item.id = itemId++;
            item.taskId = task.id;
            item.name = QString::fromUtf8(checkpoint.name);
            item.details = QString::fromUtf8(checkpoint.details);
            item.isAudit = checkpoint.isAudit;
            item.dateCreated = task.dateCreated;
            item.itemStatusId = itemStatusFor(seed.status, i, count, variant);
            if (item.itemStatusId != 3)
                item.dateUpdated = task.dateUpdated.value_or(task.dateCreated);
            if (checkpoint.hasQrCode)
                item.qrCode = QString::fromLatin1(checklist.qrPrefix) + QString::number(1000 + item.id);
            if (item.itemStatusId == 2 && incidentItem == 0)
                incidentItem = item.id;
            if (item.itemStatusId == 1 && firstDoneItem == 0)
                firstDoneItem = item.id;
            data.items.append(item);
        }
        data.tasks.append(task);

        // Comment threads on every task that has been taken on, spread over the days since.
        if (seed.status < acknowledged)
            continue;
        const qint64 span = std::max<qint64>(seed.daysAgo * kDay, 3 * kHour);
        const auto comment = [&](qint64 offset, qint64 userId) {
            DemoComment entry;
            entry.id = commentId++;
            entry.taskId = task.id;
            entry.userId = userId;
            entry.dateCreated = before(task.dateCreated.addSecs(offset));
            return entry;
        };

        DemoComment opening = comment(kHour, kDispatchId);
        opening.text = QString::fromUtf8(kDispatchNotes.at(index % kDispatchNotes.size()));
        data.comments.append(opening);

        if (seed.status >= inProgress) {
            DemoComment progress = comment(span / 4 + kHour, seed.assignee);
            progress.text = QString::fromUtf8(kProgressNotes.at(index % kProgressNotes.size()));
            if (firstDoneItem != 0 && variant % 2 == 0)
                progress.itemId = firstDoneItem;
            data.comments.append(progress);
        }
        if (incidentItem != 0) {
            DemoComment incident = comment(span / 2 + 2 * kHour, seed.assignee);
            incident.text = QString::fromUtf8(kIncidentNotes.at(index % kIncidentNotes.size()));
            incident.itemId = incidentItem;
            incident.isIncident = true;
            if (pictureCount < kMaxPictures)
                incident.media.append({addPicture(task.id), incident.dateCreated, incident.id});
            data.comments.append(incident);

            DemoComment answer = comment(span / 2 + 5 * kHour, kDispatchId);
            answer.text = QStringLiteral("Thanks, a crew is booked. Carry on with the remaining checkpoints.");
            data.comments.append(answer);
        }
        if (seed.status == completed) {
            DemoComment done = comment(span - kHour, seed.assignee);
            done.text = QStringLiteral("All checkpoints done, site left tidy.");
            if (variant % 3 == 0 && pictureCount < kMaxPictures)
                done.media.append({addPicture(task.id), done.dateCreated, done.id});
            data.comments.append(done);
        }
        if (seed.status == acknowledged && variant % 2 == 1 && pictureCount < kMaxPictures) {
            // A picture without words: the worker's first look at the site.
            DemoComment photo = comment(2 * kHour, seed.assignee);
            photo.media.append({addPicture(task.id), photo.dateCreated, photo.id});
            data.comments.append(photo);
        }
    }

    // A deployment at scale: routine tasks of the same kinds, spread over the
    // last eight weeks, each with the first three checkpoints of its checklist.
    qint64 taskId = 100 + static_cast<qint64>(kTasks.size()) + 1;
    for (const DemoUser &worker : std::as_const(data.users)) {
        if (!worker.canSignIn)
            continue;
        const auto seeded = std::count_if(kTasks.begin(), kTasks.end(),
                                          [&worker](const TaskSeed &seed) { return seed.assignee == worker.id; });
        for (int n = 0; n < tasksPerWorker - int(seeded); ++n) {
            const TaskSeed &seed = kTasks.at(static_cast<size_t>(n) % kTasks.size());
            const Site &site = kSites.at(static_cast<size_t>(n / 7) % kSites.size());
            DemoTask task;
            task.id = taskId++;
            task.name = QStringLiteral("%1 – %2 #%3")
                            .arg(QString::fromUtf8(seed.work), QString::fromUtf8(site.name))
                            .arg(n + 1);
            task.description = taskDescription(seed, data.taskCategories.at(seed.category - 1).name);
            task.latitude = site.latitude;
            task.longitude = site.longitude;
            task.ownerId = kDispatchId;
            task.ownerAssetName = QStringLiteral("Dispatch Desk");
            task.assignedUserId = worker.id;
            task.dateCreated = latest.addSecs(-(kHour + qint64(n) * 7 * 60) % (56 * kDay));
            task.taskStatusId = seed.status;
            task.taskCategoryId = seed.category;
            task.priority = (seed.priority + n) % 4;
            if (seed.status >= assigned) {
                task.updaterUserId = seed.status == assigned ? kDispatchId : worker.id;
                task.dateUpdated = before(task.dateCreated.addSecs(kHour));
            }
            const Checklist &checklist = kChecklists.at(static_cast<size_t>(seed.category - 1));
            for (int i = 0; i < 3; ++i) {
                const Checkpoint &checkpoint = checklist.checkpoints.at(static_cast<size_t>(i));
                DemoItem item;
                item.id = itemId++;
                item.taskId = task.id;
                item.name = QString::fromUtf8(checkpoint.name);
                item.details = QString::fromUtf8(checkpoint.details);
                item.isAudit = checkpoint.isAudit;
                item.dateCreated = task.dateCreated;
                item.itemStatusId = itemStatusFor(seed.status, i, 3, n);
                if (item.itemStatusId != 3)
                    item.dateUpdated = task.dateUpdated.value_or(task.dateCreated);
                if (checkpoint.hasQrCode)
                    item.qrCode = QString::fromLatin1(checklist.qrPrefix) + QString::number(1000 + item.id);
                data.items.append(item);
            }
            data.tasks.append(task);
        }
    }
    return data;
}

void DemoData::scaleFirstTasksInProgress(int itemCount, int commentCount, const QDateTime &now)
{
    if (itemCount <= 0 && commentCount <= 0)
        return;
    qint64 itemId = 1;
    for (const DemoItem &item : std::as_const(items))
        itemId = std::max(itemId, item.id + 1);
    qint64 commentId = nextCommentId();
    const QDateTime latest = QDateTime::fromSecsSinceEpoch(now.toSecsSinceEpoch() / 60 * 60 - 10 * 60, Qt::UTC);

    // A few scenes drawn once; every picture comment has a path of its own.
    QList<QByteArray> scenes;
    QList<QByteArray> sceneThumbnails;
    if (commentCount > 0) {
        for (int variant = 0; variant < kMaxPictures; ++variant) {
            const QImage picture = demopictures::drawScene(variant);
            scenes.append(demopictures::encodeJpeg(picture));
            sceneThumbnails.append(demopictures::encodeJpeg(demopictures::thumbnailOf(picture)));
        }
    }

    for (const DemoUser &worker : std::as_const(users)) {
        if (!worker.canSignIn)
            continue;
        const auto found = std::find_if(tasks.cbegin(), tasks.cend(), [&worker](const DemoTask &task) {
            return task.assignedUserId == worker.id && task.taskStatusId == inProgress;
        });
        if (found == tasks.cend())
            continue;
        const DemoTask &task = *found;

        const Checklist &checklist = kChecklists.at(static_cast<size_t>(task.taskCategoryId - 1));
        for (int n = int(itemsOf(task.id).size()); n < itemCount; ++n) {
            const Checkpoint &checkpoint
                = checklist.checkpoints.at(static_cast<size_t>(n) % checklist.checkpoints.size());
            DemoItem item;
            item.id = itemId++;
            item.taskId = task.id;
            item.name = QStringLiteral("%1 #%2").arg(QString::fromUtf8(checkpoint.name)).arg(n + 1);
            item.details = QString::fromUtf8(checkpoint.details);
            item.isAudit = checkpoint.isAudit;
            item.dateCreated = task.dateCreated;
            // Mostly open, with some done and a few incidents along the way.
            item.itemStatusId = n % 7 == 3 ? 2 : n % 3 == 0 ? 1 : 3;
            if (item.itemStatusId != 3)
                item.dateUpdated = task.dateUpdated.value_or(task.dateCreated);
            if (checkpoint.hasQrCode)
                item.qrCode = QString::fromLatin1(checklist.qrPrefix) + QString::number(1000 + item.id);
            items.append(item);
        }

        const int existing = int(commentsOf(task.id).size());
        for (int n = 0; n < commentCount - existing; ++n) {
            DemoComment comment;
            comment.id = commentId++;
            comment.taskId = task.id;
            // The newest last, twenty minutes apart: some seventy a day.
            comment.dateCreated = latest.addSecs(-qint64(commentCount - existing - n) * 20 * 60);
            comment.userId = n % 2 == 0 ? worker.id : kDispatchId;
            const char *note = n % 2 == 0 ? kProgressNotes.at(static_cast<size_t>(n / 2) % kProgressNotes.size())
                                          : kDispatchNotes.at(static_cast<size_t>(n / 2) % kDispatchNotes.size());
            comment.text = QStringLiteral("%1 (%2)").arg(QString::fromUtf8(note)).arg(n + 1);
            if (n % 5 == 4) {
                const QString path = QStringLiteral("media/task-%1/thread-%2.jpg").arg(task.id).arg(n + 1);
                pictures.insert(path, scenes.at(n % scenes.size()));
                thumbnails.insert(path, sceneThumbnails.at(n % sceneThumbnails.size()));
                comment.media.append({path, comment.dateCreated, comment.id});
            }
            comments.append(comment);
        }
    }
}

const DemoUser *DemoData::user(qint64 id) const
{
    const auto found = std::find_if(users.begin(), users.end(), [id](const DemoUser &u) { return u.id == id; });
    return found == users.end() ? nullptr : &*found;
}

DemoTask *DemoData::task(qint64 id)
{
    const auto found = std::find_if(tasks.begin(), tasks.end(), [id](const DemoTask &t) { return t.id == id; });
    return found == tasks.end() ? nullptr : &*found;
}

const DemoTask *DemoData::task(qint64 id) const
{
    const auto found = std::find_if(tasks.cbegin(), tasks.cend(), [id](const DemoTask &t) { return t.id == id; });
    return found == tasks.cend() ? nullptr : &*found;
}

DemoItem *DemoData::item(qint64 id)
{
    const auto found = std::find_if(items.begin(), items.end(), [id](const DemoItem &i) { return i.id == id; });
    return found == items.end() ? nullptr : &*found;
}

const DemoItem *DemoData::item(qint64 id) const
{
    const auto found = std::find_if(items.cbegin(), items.cend(), [id](const DemoItem &i) { return i.id == id; });
    return found == items.cend() ? nullptr : &*found;
}

QList<DemoItem> DemoData::itemsOf(qint64 taskId) const
{
    QList<DemoItem> out;
    for (const DemoItem &entry : items) {
        if (entry.taskId == taskId)
            out.append(entry);
    }
    return out;
}

QList<DemoComment> DemoData::commentsOf(qint64 taskId) const
{
    QList<DemoComment> out;
    for (const DemoComment &entry : comments) {
        if (entry.taskId == taskId)
            out.append(entry);
    }
    std::stable_sort(out.begin(), out.end(),
                     [](const DemoComment &a, const DemoComment &b) { return a.dateCreated < b.dateCreated; });
    return out;
}

std::array<int, 3> DemoData::itemCounts(qint64 taskId) const
{
    std::array<int, 3> counts{0, 0, 0};
    for (const DemoItem &entry : items) {
        if (entry.taskId == taskId && entry.itemStatusId >= 1 && entry.itemStatusId <= 3)
            ++counts.at(static_cast<size_t>(entry.itemStatusId - 1));
    }
    return counts;
}

QHash<qint64, std::array<int, 3>> DemoData::itemCountsByTask() const
{
    QHash<qint64, std::array<int, 3>> counts;
    counts.reserve(tasks.size());
    for (const DemoItem &entry : items) {
        if (entry.itemStatusId >= 1 && entry.itemStatusId <= 3)
            ++counts[entry.taskId].at(static_cast<size_t>(entry.itemStatusId - 1));
    }
    return counts;
}

qint64 DemoData::nextCommentId() const
{
    qint64 highest = 0;
    for (const DemoComment &entry : comments)
        highest = std::max(highest, entry.id);
    return highest + 1;
}

} // namespace ravelin
