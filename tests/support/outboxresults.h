#pragma once

// Results of every kind as the screens save them, for the outbox's tests and
// benchmarks. Header only: the benchmarks build without the tests.

#include "api/outboxentry.h"

namespace ravelin::test {

// A result of `kind` on `task`, made by `user` at `when`. `text` is the comment,
// or the note of an items update; `id` is the new task status of a status
// change or a block, and the item of an items update.
inline OutboxEntry sampleResult(OutboxEntry::Kind kind, qint64 user, qint64 task, const QString &text, qint64 id,
                                TimePoint when)
{
    const bool incident = kind == OutboxEntry::Kind::block;
    const TaskCommentPayload comment(text, task, user, std::nullopt, incident, std::nullopt, when);
    switch (kind) {
    case OutboxEntry::Kind::taskStatus: return OutboxEntry::taskStatus(user, task, id, when);
    case OutboxEntry::Kind::itemsUpdate: {
        ItemsUpdatePayload payload;
        payload.taskId = task;
        payload.updaterUserId = user;
        payload.items = {ItemPayload{id, 1, text, std::nullopt}};
        return OutboxEntry::itemsUpdate(payload, when);
    }
    case OutboxEntry::Kind::comment: return OutboxEntry::comment(comment);
    case OutboxEntry::Kind::block: return OutboxEntry::block(comment, id);
    }
    return {};
}

} // namespace ravelin::test
