#include "comments/thumbnailcache.h"

namespace ravelin {

ThumbnailCache::ThumbnailCache(Loader loader, qint64 budgetBytes, QObject *parent)
    : QObject(parent)
    , m_loader(std::move(loader))
{
    m_images.setMaxCost(budgetBytes);
}

QImage ThumbnailCache::thumbnail(const QString &path) const
{
    const QImage *image = m_images.object(path);
    return image ? *image : QImage();
}

bool ThumbnailCache::request(const QString &path, bool retryFailed)
{
    if (path.isEmpty() || m_loading.contains(path) || m_images.contains(path)
        || (m_failed.contains(path) && !retryFailed))
        return false;
    m_failed.remove(path);
    m_loading.insert(path);
    ++m_requests;
    // The cache is the context: when it goes, nothing calls back.
    m_loader(path, this, [this, path](std::optional<QImage> picture) { arrived(path, std::move(picture)); });
    return true;
}

void ThumbnailCache::arrived(const QString &path, std::optional<QImage> picture)
{
    m_loading.remove(path);
    if (picture && !picture->isNull()) {
        const qint64 bytes = std::max<qint64>(1, picture->sizeInBytes());
        // A picture over the whole budget is shown nowhere rather than emptying the cache.
        if (!m_images.insert(path, new QImage(std::move(*picture)), bytes))
            m_failed.insert(path);
    } else {
        m_failed.insert(path);
    }
    emit thumbnailChanged(path);
}

} // namespace ravelin
