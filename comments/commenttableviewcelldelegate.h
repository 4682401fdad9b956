#pragma once

#include <QImage>

#include <optional>

namespace ravelin {

// How a comment cell reports a tap on its picture: the picture as the cell
// shows it, or nothing when it has not arrived.
class CommentTableViewCellDelegate
{
public:
    virtual ~CommentTableViewCellDelegate() = default;
    virtual void commentCellDidTapImage(const std::optional<QImage> &image) = 0;
};

} // namespace ravelin
