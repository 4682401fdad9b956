#include "api/sqliteofflinestore.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>
#include <QTimeZone>
#include <QUuid>

#include <fcntl.h>
#include <unistd.h>

namespace ravelin {

namespace {

constexpr auto databaseName = "offline.sqlite3";
constexpr auto pictureFolderName = "pictures";
constexpr auto temporarySuffix = ".part";
constexpr int busyTimeoutMs = 5000;

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

const char *const entryColumns = "id, user_id, task_id, kind, payload, date_created, picture, upload_name, media_path, "
                                 "state, steps_done, attempts, reason";

void logFailure(const QString &what, const QSqlError &error)
{
    qCWarning(lcOffline).noquote() << what << error.text();
}

QVariant orNull(const std::optional<QString> &value)
{
    return value ? QVariant(*value) : QVariant(QMetaType(QMetaType::QString));
}

QVariant orNull(const QString &value)
{
    return value.isEmpty() ? QVariant(QMetaType(QMetaType::QString)) : QVariant(value);
}

std::optional<OutboxEntry> readEntry(const QSqlQuery &query)
{
    OutboxEntry entry;
    entry.id = query.value(0).toLongLong();
    entry.userId = query.value(1).toLongLong();
    entry.taskId = query.value(2).toLongLong();
    const int kind = query.value(3).toInt();
    const int state = query.value(9).toInt();
    if (kind < 0 || kind > int(OutboxEntry::Kind::block) || state < 0 || state > int(OutboxEntry::State::refused))
        return std::nullopt;
    entry.kind = OutboxEntry::Kind(kind);
    if (!entry.decodePayload(query.value(4).toByteArray()))
        return std::nullopt;
    entry.dateCreated = query.value(5).toLongLong();
    entry.pictureFile = query.value(6).toString();
    entry.uploadName = query.value(7).toString();
    if (!query.isNull(8))
        entry.mediaPath = query.value(8).toString();
    entry.state = OutboxEntry::State(state);
    entry.stepsDone = query.value(10).toInt();
    entry.attempts = query.value(11).toInt();
    entry.reason = query.value(12).toString();
    return entry;
}

} // namespace

SqliteOfflineStore::SqliteOfflineStore(const QString &folder)
    : m_folder(folder)
    , m_connectionName(QStringLiteral("ravelin.offline.") + QUuid::createUuid().toString(QUuid::WithoutBraces))
    , m_thread(QThread::currentThread())
{
    m_open = open();
    if (!m_open)
        qCWarning(lcOffline).noquote() << "The offline store could not be opened in" << folder;
}

SqliteOfflineStore::~SqliteOfflineStore()
{
    if (m_db.isValid())
        m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connectionName);
}

QString SqliteOfflineStore::databasePath() const
{
    return QDir(m_folder).filePath(QLatin1String(databaseName));
}

QString SqliteOfflineStore::pictureFolder() const
{
    return QDir(m_folder).filePath(QLatin1String(pictureFolderName));
}

QVariant SqliteOfflineStore::pragma(const QString &name) const
{
    if (!m_open || !onOwnThread())
        return {};
    QSqlQuery query(m_db);
    if (!query.exec(QStringLiteral("PRAGMA ") + name) || !query.next())
        return {};
    return query.value(0);
}

bool SqliteOfflineStore::onOwnThread() const
{
    if (QThread::currentThread() == m_thread)
        return true;
    qCWarning(lcOffline) << "The offline store is used from a thread that did not make it";
    return false;
}

bool SqliteOfflineStore::open()
{
    if (!QDir().mkpath(pictureFolder()))
        return false;
    QFile::setPermissions(m_folder, ownerOnly | QFile::ExeOwner);
    QFile::setPermissions(pictureFolder(), ownerOnly | QFile::ExeOwner);

    // Made 0600 before SQLite first opens it; SQLite gives its -wal and -shm files
    // the database file's mode.
    const QString path = databasePath();
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        return false;
    ::close(fd);
    QFile::setPermissions(path, ownerOnly);

    m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    m_db.setDatabaseName(path);
    m_db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(busyTimeoutMs));
    if (!m_db.open()) {
        logFailure(QStringLiteral("Opening the offline store:"), m_db.lastError());
        return false;
    }
    if (!applyPragmas() || !migrate())
        return false;
    removeUnnamedPictures();
    return true;
}

bool SqliteOfflineStore::applyPragmas()
{
    QSqlQuery query(m_db);
    if (!query.exec(QStringLiteral("PRAGMA journal_mode=WAL")) || !query.next()
        || query.value(0).toString().compare(QLatin1String("wal"), Qt::CaseInsensitive) != 0) {
        logFailure(QStringLiteral("Setting the journal mode:"), query.lastError());
        return false;
    }
    const QStringList pragmas{QStringLiteral("PRAGMA synchronous=FULL"),
                              QStringLiteral("PRAGMA busy_timeout=%1").arg(busyTimeoutMs),
                              QStringLiteral("PRAGMA foreign_keys=ON")};
    for (const QString &pragma : pragmas) {
        if (!query.exec(pragma)) {
            logFailure(pragma, query.lastError());
            return false;
        }
    }
    return true;
}

bool SqliteOfflineStore::migrate()
{
    QSqlQuery query(m_db);
    if (!query.exec(QStringLiteral("PRAGMA user_version")) || !query.next())
        return false;
    const int version = query.value(0).toInt();
    if (version == schemaVersion)
        return true;
    if (version > schemaVersion) {
        qCWarning(lcOffline) << "The offline store was written by a newer version (schema" << version << ")";
        return false;
    }

    // Every step from the stored version up, in one transaction with the new version.
    QStringList steps;
    if (version < 1) {
        steps << QStringLiteral(
            "CREATE TABLE cache (user_id INTEGER NOT NULL, route TEXT NOT NULL, body BLOB NOT NULL, "
            "fetched_ms INTEGER NOT NULL, PRIMARY KEY (user_id, route))")
              << QStringLiteral("CREATE TABLE outbox (id INTEGER PRIMARY KEY AUTOINCREMENT, user_id INTEGER NOT NULL, "
                                "task_id INTEGER NOT NULL, kind INTEGER NOT NULL, payload BLOB NOT NULL, "
                                "date_created INTEGER NOT NULL, picture TEXT, upload_name TEXT, media_path TEXT, "
                                "state INTEGER NOT NULL DEFAULT 0, steps_done INTEGER NOT NULL DEFAULT 0, "
                                "attempts INTEGER NOT NULL DEFAULT 0, reason TEXT)")
              << QStringLiteral("CREATE INDEX outbox_by_user ON outbox (user_id, state, id)");
    }
    steps << QStringLiteral("PRAGMA user_version=%1").arg(schemaVersion);

    if (!m_db.transaction())
        return false;
    for (const QString &step : std::as_const(steps)) {
        if (!query.exec(step)) {
            logFailure(QStringLiteral("Migrating the offline store:"), query.lastError());
            m_db.rollback();
            return false;
        }
    }
    return m_db.commit();
}

void SqliteOfflineStore::removeUnnamedPictures()
{
    QSet<QString> named;
    QSqlQuery query(m_db);
    if (!query.exec(QStringLiteral("SELECT picture FROM outbox WHERE picture IS NOT NULL")))
        return;
    while (query.next())
        named.insert(query.value(0).toString());
    const QDir folder(pictureFolder());
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden)) {
        // A picture is synced before its rename, and the rename is not waited for:
        // the row's commit carries it on a journalling file system. Where it was
        // lost all the same, the synced file under its temporary name is the picture.
        if (name.endsWith(QLatin1String(temporarySuffix))) {
            const QString finalName = name.chopped(qsizetype(qstrlen(temporarySuffix)));
            if (named.contains(finalName) && !folder.exists(finalName)) {
                QFile::rename(folder.filePath(name), folder.filePath(finalName));
                continue;
            }
        }
        if (!named.contains(name)) {
            qCDebug(lcOffline).noquote() << "Removing a picture no row names:" << name;
            QFile::remove(folder.filePath(name));
        }
    }
}

std::optional<QString> SqliteOfflineStore::writePicture(const QByteArray &bytes)
{
    const QDir folder(pictureFolder());
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces) + QStringLiteral(".jpg");
    const QString temporary = folder.filePath(name + QLatin1String(temporarySuffix));
    QFile file(temporary);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly))
        return std::nullopt;
    const bool written = file.write(bytes) == bytes.size() && file.flush() && ::fsync(file.handle()) == 0;
    file.close();
    if (!written || !QFile::rename(temporary, folder.filePath(name))) {
        QFile::remove(temporary);
        QFile::remove(folder.filePath(name));
        return std::nullopt;
    }
    return name;
}

void SqliteOfflineStore::removePicture(const QString &name)
{
    if (!name.isEmpty())
        QFile::remove(QDir(pictureFolder()).filePath(name));
}

bool SqliteOfflineStore::storeAnswer(qint64 userId, const QString &route, const QByteArray &body, TimePoint fetchedAt)
{
    if (!m_open || !onOwnThread())
        return false;
    QSqlQuery query(m_db);
    query.prepare(QStringLiteral(
        "INSERT OR REPLACE INTO cache (user_id, route, body, fetched_ms) VALUES (:user, :route, :body, :fetched)"));
    query.bindValue(QStringLiteral(":user"), userId);
    query.bindValue(QStringLiteral(":route"), route);
    query.bindValue(QStringLiteral(":body"), body);
    query.bindValue(QStringLiteral(":fetched"), qint64(toDateTime(fetchedAt).toMSecsSinceEpoch()));
    if (!query.exec()) {
        logFailure(QStringLiteral("Keeping an answer:"), query.lastError());
        return false;
    }
    return true;
}

std::optional<OfflineStore::CachedAnswer> SqliteOfflineStore::cachedAnswer(qint64 userId, const QString &route) const
{
    if (!m_open || !onOwnThread())
        return std::nullopt;
    QSqlQuery query(m_db);
    query.prepare(QStringLiteral("SELECT body, fetched_ms FROM cache WHERE user_id = :user AND route = :route"));
    query.bindValue(QStringLiteral(":user"), userId);
    query.bindValue(QStringLiteral(":route"), route);
    if (!query.exec() || !query.next())
        return std::nullopt;
    return CachedAnswer{query.value(0).toByteArray(),
                        toTimePoint(QDateTime::fromMSecsSinceEpoch(query.value(1).toLongLong(), QTimeZone::utc()))};
}

std::optional<OutboxEntry> SqliteOfflineStore::add(OutboxEntry entry, const QByteArray &picture)
{
    if (!m_open || !onOwnThread())
        return std::nullopt;
    entry.pictureFile.clear();
    if (!picture.isEmpty()) {
        const auto name = writePicture(picture);
        if (!name) {
            qCWarning(lcOffline) << "The picture of a result could not be written";
            return std::nullopt;
        }
        entry.pictureFile = *name;
    }

    QSqlQuery query(m_db);
    query.prepare(QStringLiteral(
        "INSERT INTO outbox (user_id, task_id, kind, payload, date_created, picture, upload_name, media_path, state, "
        "steps_done, attempts, reason) VALUES (:user, :task, :kind, :payload, :created, :picture, :upload, :media, "
        ":state, :steps, :attempts, :reason)"));
    query.bindValue(QStringLiteral(":user"), entry.userId);
    query.bindValue(QStringLiteral(":task"), entry.taskId);
    query.bindValue(QStringLiteral(":kind"), int(entry.kind));
    query.bindValue(QStringLiteral(":payload"), entry.encodePayload());
    query.bindValue(QStringLiteral(":created"), entry.dateCreated);
    query.bindValue(QStringLiteral(":picture"), orNull(entry.pictureFile));
    query.bindValue(QStringLiteral(":upload"), orNull(entry.uploadName));
    query.bindValue(QStringLiteral(":media"), orNull(entry.mediaPath));
    query.bindValue(QStringLiteral(":state"), int(entry.state));
    query.bindValue(QStringLiteral(":steps"), entry.stepsDone);
    query.bindValue(QStringLiteral(":attempts"), entry.attempts);
    query.bindValue(QStringLiteral(":reason"), orNull(entry.reason));
    // One statement is one transaction: the row commits whole, after its picture.
    if (!query.exec()) {
        logFailure(QStringLiteral("Writing a result:"), query.lastError());
        removePicture(entry.pictureFile);
        return std::nullopt;
    }
    entry.id = query.lastInsertId().toLongLong();
    return entry;
}

QList<OutboxEntry> SqliteOfflineStore::entries(qint64 userId) const
{
    QList<OutboxEntry> result;
    if (!m_open || !onOwnThread())
        return result;
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    query.prepare(QStringLiteral("SELECT %1 FROM outbox WHERE user_id = :user AND state <> :sent ORDER BY id")
                      .arg(QLatin1String(entryColumns)));
    query.bindValue(QStringLiteral(":user"), userId);
    query.bindValue(QStringLiteral(":sent"), int(OutboxEntry::State::sent));
    if (!query.exec()) {
        logFailure(QStringLiteral("Reading the outbox:"), query.lastError());
        return result;
    }
    while (query.next()) {
        if (auto entry = readEntry(query))
            result.append(std::move(*entry));
        else
            qCWarning(lcOffline) << "An outbox row could not be read:" << query.value(0).toLongLong();
    }
    return result;
}

std::optional<OutboxEntry> SqliteOfflineStore::entry(qint64 id) const
{
    if (!m_open || !onOwnThread())
        return std::nullopt;
    QSqlQuery query(m_db);
    query.prepare(QStringLiteral("SELECT %1 FROM outbox WHERE id = :id").arg(QLatin1String(entryColumns)));
    query.bindValue(QStringLiteral(":id"), id);
    if (!query.exec() || !query.next())
        return std::nullopt;
    return readEntry(query);
}

QByteArray SqliteOfflineStore::picture(const OutboxEntry &entry) const
{
    if (!entry.hasPicture())
        return {};
    QFile file(QDir(pictureFolder()).filePath(entry.pictureFile));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool SqliteOfflineStore::update(const OutboxEntry &entry)
{
    if (!m_open || !onOwnThread())
        return false;
    if (entry.state == OutboxEntry::State::sent)
        return remove(entry.id);
    QSqlQuery query(m_db);
    query.prepare(QStringLiteral("UPDATE outbox SET media_path = :media, state = :state, steps_done = :steps, "
                                 "attempts = :attempts, reason = :reason WHERE id = :id"));
    query.bindValue(QStringLiteral(":media"), orNull(entry.mediaPath));
    query.bindValue(QStringLiteral(":state"), int(entry.state));
    query.bindValue(QStringLiteral(":steps"), entry.stepsDone);
    query.bindValue(QStringLiteral(":attempts"), entry.attempts);
    query.bindValue(QStringLiteral(":reason"), orNull(entry.reason));
    query.bindValue(QStringLiteral(":id"), entry.id);
    if (!query.exec() || query.numRowsAffected() != 1) {
        logFailure(QStringLiteral("Updating outbox row %1:").arg(entry.id), query.lastError());
        return false;
    }
    return true;
}

bool SqliteOfflineStore::remove(qint64 id)
{
    if (!m_open || !onOwnThread())
        return false;
    const std::optional<OutboxEntry> existing = entry(id);
    QSqlQuery query(m_db);
    query.prepare(QStringLiteral("DELETE FROM outbox WHERE id = :id"));
    query.bindValue(QStringLiteral(":id"), id);
    if (!query.exec()) {
        logFailure(QStringLiteral("Removing outbox row %1:").arg(id), query.lastError());
        return false;
    }
    // After the commit: a kill in between leaves a file no row names, removed at the next start.
    if (existing)
        removePicture(existing->pictureFile);
    return true;
}

OfflineStore::Counts SqliteOfflineStore::counts(qint64 userId) const
{
    Counts counts;
    if (!m_open || !onOwnThread())
        return counts;
    QSqlQuery query(m_db);
    query.prepare(QStringLiteral("SELECT state, COUNT(*) FROM outbox WHERE user_id = :user GROUP BY state"));
    query.bindValue(QStringLiteral(":user"), userId);
    if (!query.exec())
        return counts;
    while (query.next()) {
        const auto state = OutboxEntry::State(query.value(0).toInt());
        const int count = query.value(1).toInt();
        if (state == OutboxEntry::State::waiting || state == OutboxEntry::State::attempted)
            counts.waiting += count;
        else if (state == OutboxEntry::State::refused)
            counts.refused += count;
    }
    return counts;
}

} // namespace ravelin
