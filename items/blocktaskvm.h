#pragma once

#include "api/usersdata.h"
#include "tasks/task.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <optional>

namespace ravelin {

class NetworkManager;

// Marks the open task as blocked: the reason and the picture travel as an
// incident comment on the task; the status change itself is made by the
// dashboard once the screen reports the block.
class BlockTaskVM : public QObject
{
    Q_OBJECT

public:
    enum class Outcome {
        blockedWithoutComment, // no picture and no usable reason: nothing was posted
        blocked, // the incident comment was posted
        failed, // posting the comment failed; the task is not blocked
    };
    Q_ENUM(Outcome)

    BlockTaskVM(TaskPtr task, NetworkManager *networkManager, QString placeholderNote, UsersData users,
                QObject *parent = nullptr);

    [[nodiscard]] const TaskPtr &task() const { return m_task; }
    [[nodiscard]] QString placeholderNote() const { return m_placeholderNote; }

    // The one item's name, or empty unless the task has exactly one item.
    [[nodiscard]] QString itemLine() const;
    // The one item's details; empty without items; otherwise every item name on its own line.
    [[nodiscard]] QString detailsLine() const;

    // Whether a block with this reason and picture posts a comment: always with a
    // picture; without one only for a reason that is present, not empty and not a single blank.
    [[nodiscard]] static bool postsComment(const std::optional<QString> &reason, bool hasPicture);

    void block(const std::optional<QString> &reason, const std::optional<QImage> &picture,
               std::function<void(Outcome)> completion);

private:
    TaskPtr m_task;
    QPointer<NetworkManager> m_networkManager;
    QString m_placeholderNote;
    UsersData m_users;
};

} // namespace ravelin
