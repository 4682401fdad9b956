#pragma once

#include "api/offlinestore.h"

#include <QSqlDatabase>
#include <QString>
#include <QVariant>

class QThread;

namespace ravelin {

// The offline store in one SQLite database ("offline.sqlite3", mode 0600) in a
// folder the host gives, with the outbox's pictures as files in "pictures/"
// beside it. Every connection runs with WAL, synchronous FULL, a busy time-out
// and foreign keys on; the schema version is PRAGMA user_version. A picture is
// written under a temporary name, synced and renamed before the row that names
// it commits, so a kill leaves no row without its file; files no row names are
// removed when the store opens, and a synced picture whose rename was lost is
// taken back under its name. No session token is ever written here.
//
// All work happens on the thread that made the store, on its own connection.
class SqliteOfflineStore : public OfflineStore
{
public:
    static constexpr int schemaVersion = 1;

    explicit SqliteOfflineStore(const QString &folder);
    ~SqliteOfflineStore() override;
    SqliteOfflineStore(const SqliteOfflineStore &) = delete;
    SqliteOfflineStore &operator=(const SqliteOfflineStore &) = delete;

    [[nodiscard]] QString databasePath() const;
    [[nodiscard]] QString pictureFolder() const;
    // The value of a PRAGMA on the store's connection ("journal_mode", "synchronous").
    [[nodiscard]] QVariant pragma(const QString &name) const;

    [[nodiscard]] bool isOpen() const override { return m_open; }
    bool storeAnswer(qint64 userId, const QString &route, const QByteArray &body, TimePoint fetchedAt) override;
    [[nodiscard]] std::optional<CachedAnswer> cachedAnswer(qint64 userId, const QString &route) const override;
    [[nodiscard]] std::optional<OutboxEntry> add(OutboxEntry entry, const QByteArray &picture) override;
    [[nodiscard]] QList<OutboxEntry> entries(qint64 userId) const override;
    [[nodiscard]] std::optional<OutboxEntry> entry(qint64 id) const override;
    [[nodiscard]] QByteArray picture(const OutboxEntry &entry) const override;
    bool update(const OutboxEntry &entry) override;
    bool remove(qint64 id) override;
    [[nodiscard]] Counts counts(qint64 userId) const override;

private:
    bool open();
    bool applyPragmas();
    bool migrate();
    void removeUnnamedPictures();
    // Writes the picture durably under a new name; answers the name, or nothing.
    [[nodiscard]] std::optional<QString> writePicture(const QByteArray &bytes);
    void removePicture(const QString &name);
    [[nodiscard]] bool onOwnThread() const;

    QString m_folder;
    QString m_connectionName;
    QSqlDatabase m_db;
    QThread *m_thread = nullptr;
    bool m_open = false;
};

} // namespace ravelin
