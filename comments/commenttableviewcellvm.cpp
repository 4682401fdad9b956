#include "comments/commenttableviewcellvm.h"

#include "api/debuglog.h"
#include "api/networkmanager.h"

namespace ravelin {

CommentTableViewCellVM::CommentTableViewCellVM(CommentCellDetail comment, NetworkManager *networkManager,
                                               QObject *parent)
    : QObject(parent)
    , m_comment(std::move(comment))
    , m_networkManager(networkManager)
{
    if (!m_comment.media.isEmpty())
        m_path = m_comment.media.first()->path;
}

void CommentTableViewCellVM::loadThumbnail(std::function<void(std::optional<QImage>)> completion)
{
    if (!m_path || !m_networkManager) {
        completion(std::nullopt);
        return;
    }
    m_networkManager->downloadImage(
        *m_path, true, this, [completion = std::move(completion)](const Result<QImage, DownloadError> &result) {
            if (!result.isSuccess()) {
                debugLog(lcComments,
                         QStringLiteral("We got a failure trying to download the image. The error we got was: ")
                             + result.error().localizedDescription());
                completion(std::nullopt);
                return;
            }
            completion(result.value());
        });
}

} // namespace ravelin
