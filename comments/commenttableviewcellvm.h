#pragma once

#include "comments/commentcelldetail.h"

#include <QImage>
#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

namespace ravelin {

class NetworkManager;

// The view model of one comment cell: the detail it shows and the thumbnail of
// the comment's first picture.
class CommentTableViewCellVM : public QObject
{
    Q_OBJECT

public:
    CommentTableViewCellVM(CommentCellDetail comment, NetworkManager *networkManager, QObject *parent = nullptr);

    [[nodiscard]] const CommentCellDetail &comment() const { return m_comment; }
    // Server path of the first picture; later pictures are not shown.
    [[nodiscard]] std::optional<QString> path() const { return m_path; }

    // Downloads the thumbnail of `path`; the completion receives no picture on
    // failure (after a debug line) or when there is no path.
    void loadThumbnail(std::function<void(std::optional<QImage>)> completion);

private:
    CommentCellDetail m_comment;
    QPointer<NetworkManager> m_networkManager;
    std::optional<QString> m_path;
};

} // namespace ravelin
