#pragma once

#include <QCache>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <optional>

namespace ravelin {

// The thumbnails of a comment thread's pictures by server path. A path is
// asked for once while its picture is kept or on its way; the pictures are
// kept up to a budget in bytes, the least recently shown going first. A path
// that could not be had is asked for again only on request (when its row
// comes back into sight).
class ThumbnailCache : public QObject
{
    Q_OBJECT

public:
    // Loads one thumbnail and calls back with it, or with nothing on failure,
    // unless `context` has gone by then.
    using Loader
        = std::function<void(const QString &path, QObject *context, std::function<void(std::optional<QImage>)>)>;

    static constexpr qint64 defaultBudget = qint64(16) * 1024 * 1024;

    explicit ThumbnailCache(Loader loader, qint64 budgetBytes = defaultBudget, QObject *parent = nullptr);

    // The picture if it is kept; a null image otherwise. Never starts a load.
    [[nodiscard]] QImage thumbnail(const QString &path) const;
    [[nodiscard]] bool isLoading(const QString &path) const { return m_loading.contains(path); }
    [[nodiscard]] bool hasFailed(const QString &path) const { return m_failed.contains(path); }

    // Starts loading a picture that is neither kept nor on its way; one that
    // failed is tried again only with `retryFailed`. Says whether it started.
    bool request(const QString &path, bool retryFailed = false);

    [[nodiscard]] qint64 budget() const { return m_images.maxCost(); }
    [[nodiscard]] qint64 keptBytes() const { return m_images.totalCost(); }
    // How many loads were started.
    [[nodiscard]] int requestCount() const { return m_requests; }

signals:
    // A picture arrived or could not be had.
    void thumbnailChanged(const QString &path);

private:
    void arrived(const QString &path, std::optional<QImage> picture);

    Loader m_loader;
    mutable QCache<QString, QImage> m_images;
    QSet<QString> m_loading;
    QSet<QString> m_failed;
    int m_requests = 0;
};

} // namespace ravelin
