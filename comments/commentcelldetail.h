#pragma once

#include "comments/comment.h"
#include "tasks/task.h"

#include <QColor>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace ravelin {

// One piece of a comment's details line: an icon recoloured with a named colour,
// then a text. The screen draws it; the record says what to draw.
struct DetailFragment
{
    QString iconName; // "nok" for incidents, "ok" otherwise
    QString colorName; // "CustomRed" for incidents, "CustomGreen" otherwise
    QColor fallbackColor; // the system colour used when the named colour is missing
    double alpha = 0.8;
    QString text;

    friend bool operator==(const DetailFragment &, const DetailFragment &) = default;
};

// What one comment cell shows.
struct CommentCellDetail
{
    QString user; // the sending asset's name
    QString userIconName;
    QString text;
    QDateTime sentDate;
    QString kind = QStringLiteral("Text");
    QList<MediaPtr> media;
    bool isTaskComment = false; // about the task as a whole (no item ids)
    bool isIncident = false;
    SyncMark syncMark = SyncMark::none;
    // A task incident: one fragment "Task Marked as Blocked". An item comment: one
    // fragment per named item of the task, each text ending with a line break
    // (unknown ids add nothing, so the list may be empty). Otherwise nothing.
    std::optional<QList<DetailFragment>> details;

    [[nodiscard]] static CommentCellDetail make(const Comment &comment, const Task &task);
    // The details as plain text (fragments' texts one after another).
    [[nodiscard]] QString detailsText() const;
};

} // namespace ravelin
