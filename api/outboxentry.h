#pragma once

#include "comments/taskcommentpayload.h"
#include "items/itemsupdatepayload.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace ravelin {

// One result of the worker kept in the outbox until the server has it: a task
// status change, an item update (with its note and picture), a comment (with its
// picture) or a block (the incident comment, then the status change). It is
// "saved" once its row has committed; from then on it is sent exactly once.
class OutboxEntry
{
public:
    enum class Kind {
        taskStatus,
        itemsUpdate,
        comment,
        block,
    };

    enum class State {
        waiting, // not sent yet, or a retry is due
        attempted, // a comment whose request may have reached the server
        sent,
        refused, // the server answered 4xx: "Not sent", with its reason
    };

    [[nodiscard]] static OutboxEntry taskStatus(qint64 userId, qint64 taskId, qint64 statusId, TimePoint now);
    // The picture, when there is one, is uploaded first and its server path is
    // written into every item of the payload.
    [[nodiscard]] static OutboxEntry itemsUpdate(const ItemsUpdatePayload &payload, TimePoint now);
    // The payload's creation time is the comment's `date_created`, fixed here.
    [[nodiscard]] static OutboxEntry comment(const TaskCommentPayload &payload);
    // The incident comment goes first, then the change to `statusId`.
    [[nodiscard]] static OutboxEntry block(const TaskCommentPayload &incident, qint64 statusId);

    qint64 id = 0; // the row id: rows of one task are sent in this order
    qint64 userId = 0; // who made the result; only that user's session sends it
    qint64 taskId = 0;
    Kind kind = Kind::taskStatus;
    qint64 statusId = 0; // taskStatus, block
    std::optional<ItemsUpdatePayload> items; // itemsUpdate
    std::optional<TaskCommentPayload> commentPayload; // comment, block
    qint64 dateCreated = 0; // milliseconds since 1970, fixed when the row is written
    // The picture file beside the store ("" without a picture), the name the host
    // stores it under, and the server path once the host has stored it.
    QString pictureFile;
    QString uploadName;
    std::optional<QString> mediaPath;
    State state = State::waiting;
    int stepsDone = 0; // a block: 1 once its comment is on the server
    int attempts = 0;
    QString reason; // the server's reason of a refusal

    [[nodiscard]] bool hasPicture() const { return !pictureFile.isEmpty(); }
    // Whether the next request is the comment's post (to be looked for in the
    // thread before it is posted again after an attempt).
    [[nodiscard]] bool nextStepIsComment() const;
    [[nodiscard]] bool isPending() const { return state == State::waiting || state == State::attempted; }

    // The body of the next request, with the picture's server path filled in.
    [[nodiscard]] ItemsUpdatePayload itemsToSend() const;
    [[nodiscard]] TaskCommentPayload commentToSend() const;

    // The kind's own fields as stored in the payload column, and back.
    [[nodiscard]] QByteArray encodePayload() const;
    [[nodiscard]] bool decodePayload(const QByteArray &payload);

    [[nodiscard]] static QString stateName(State state);
};

} // namespace ravelin
