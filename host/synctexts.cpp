#include "host/synctexts.h"

#include "items/itemstatus.h"
#include "tasks/taskstatus.h"

#include <QCoreApplication>

#include <cstdint>

namespace ravelin::SyncTexts {

QString offlinePrompt(TimePoint updatedAt, TimePoint now)
{
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(now - updatedAt).count();
    constexpr std::int64_t minutesPerDay = std::int64_t(24) * 60;
    QString age;
    if (minutes < 1)
        age = QCoreApplication::translate("SyncTexts", "updated just now");
    else if (minutes < 60)
        age = QCoreApplication::translate("SyncTexts", "updated %1 min ago").arg(int(minutes));
    else if (minutes < minutesPerDay)
        age = QCoreApplication::translate("SyncTexts", "updated %1 h ago").arg(int(minutes / 60));
    else
        age = QCoreApplication::translate("SyncTexts", "updated %1 d ago").arg(int(minutes / minutesPerDay));
    return QCoreApplication::translate("SyncTexts", "Offline") + QStringLiteral(" · ") + age;
}

QString countText(int waiting, int refused)
{
    QStringList parts;
    if (waiting > 0)
        parts.append(QCoreApplication::translate("SyncTexts", "%1 waiting").arg(waiting));
    if (refused > 0)
        parts.append(QCoreApplication::translate("SyncTexts", "%1 not sent").arg(refused));
    return parts.join(QStringLiteral(" · "));
}

QString markText(SyncMark mark)
{
    switch (mark) {
    case SyncMark::waiting: return QCoreApplication::translate("SyncTexts", "Waiting");
    case SyncMark::notSent: return QCoreApplication::translate("SyncTexts", "Not sent");
    case SyncMark::none: break;
    }
    return {};
}

QString entrySummary(const OutboxEntry &entry)
{
    const QString task = QCoreApplication::translate("SyncTexts", "Task %1").arg(entry.taskId);
    QString what;
    switch (entry.kind) {
    case OutboxEntry::Kind::taskStatus:
        what = QCoreApplication::translate("SyncTexts", "Status: %1")
                   .arg(TaskStatuses::text(TaskStatuses::fromServerId(entry.statusId)));
        break;
    case OutboxEntry::Kind::itemsUpdate: {
        const int count = entry.items ? int(entry.items->items.size()) : 0;
        const bool reported = entry.items && !entry.items->items.isEmpty()
            && ItemStatuses::fromServerId(entry.items->items.first().itemStatusId) == ItemStatus::nok;
        what = reported ? QCoreApplication::translate("SyncTexts", "Items reported: %1").arg(count)
                        : QCoreApplication::translate("SyncTexts", "Items completed: %1").arg(count);
        break;
    }
    case OutboxEntry::Kind::comment:
        what = QCoreApplication::translate("SyncTexts", "Comment: %1")
                   .arg(entry.commentPayload ? entry.commentPayload->text.trimmed() : QString());
        break;
    case OutboxEntry::Kind::block:
        what = QCoreApplication::translate("SyncTexts", "Blocked: %1")
                   .arg(entry.commentPayload ? entry.commentPayload->text.trimmed() : QString());
        break;
    }
    if (entry.hasPicture())
        what += QStringLiteral(" · ") + QCoreApplication::translate("SyncTexts", "photo");
    return task + QStringLiteral(" · ") + what;
}

QString entryState(const OutboxEntry &entry)
{
    if (entry.state == OutboxEntry::State::refused)
        return entry.reason.isEmpty() ? markText(SyncMark::notSent)
                                      : markText(SyncMark::notSent) + QStringLiteral(": ") + entry.reason;
    return markText(SyncMark::waiting);
}

} // namespace ravelin::SyncTexts
