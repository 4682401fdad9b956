#include "comments/commentthreadmodel.h"

#include "api/debuglog.h"
#include "api/networkmanager.h"
#include "api/outboxsender.h"
#include "comments/commentsvm.h"
#include "comments/elapsedtime.h"

#include <QSet>

namespace ravelin {

CommentThreadModel::CommentThreadModel(Clock clock, QObject *parent)
    : QAbstractListModel(parent)
    , m_clock(std::move(clock))
{
    m_thumbnails = new ThumbnailCache(
        [this](const QString &path, QObject *context, std::function<void(std::optional<QImage>)> done) {
            NetworkManager *network = m_viewModel ? m_viewModel->networkManager() : nullptr;
            if (!network) {
                done(std::nullopt);
                return;
            }
            // A comment still in the outbox shows the picture it was written with.
            if (const std::optional<qint64> id = CommentsVM::outboxPictureId(path)) {
                QImage picture;
                if (OutboxSender *outbox = network->outbox())
                    picture.loadFromData(outbox->picture(*id), "JPEG");
                if (picture.isNull()) {
                    done(std::nullopt);
                    return;
                }
                done(picture.scaled(QSize(400, 300), Qt::KeepAspectRatio, Qt::SmoothTransformation));
                return;
            }
            network->downloadImage(
                path, true, context, [done = std::move(done)](const Result<QImage, DownloadError> &result) {
                    if (!result.isSuccess()) {
                        debugLog(lcComments,
                                 QStringLiteral("We got a failure trying to download the image. The error we got was: ")
                                     + result.error().localizedDescription());
                        done(std::nullopt);
                        return;
                    }
                    done(result.value());
                });
        },
        ThumbnailCache::defaultBudget, this);
    connect(m_thumbnails, &ThumbnailCache::thumbnailChanged, this, &CommentThreadModel::thumbnailChanged);
}

CommentThreadModel::~CommentThreadModel() = default;

void CommentThreadModel::setViewModel(CommentsVM *viewModel)
{
    beginResetModel();
    m_viewModel = viewModel;
    m_rows = takeRows();
    endResetModel();
}

QList<CommentThreadModel::Row> CommentThreadModel::takeRows() const
{
    QList<Row> rows;
    if (!m_viewModel)
        return rows;
    QHash<QString, int> seen;
    for (int section = 0; section < m_viewModel->numberOfSections(); ++section) {
        const CommentSection &day = m_viewModel->section(section);
        rows.append(Row{section, -1, day.date, {}, QStringLiteral("day ") + day.date.date().toString(Qt::ISODate)});
        for (int row = 0; row < day.comments.size(); ++row) {
            const Comment &comment = *day.comments.at(row);
            QString key = QStringLiteral("%1 %2 %3 %4")
                              .arg(comment.dateCreated.toMSecsSinceEpoch())
                              .arg(comment.userId)
                              .arg(comment.itemIds.value(0))
                              .arg(comment.text.value_or(QString()));
            // The same comment twice: the second is a row of its own.
            if (const int twice = seen[key]++; twice > 0)
                key += QStringLiteral(" #%1").arg(twice);
            rows.append(Row{section, row, {}, CommentCellDetail::make(comment, *m_viewModel->task()), key});
        }
    }
    return rows;
}

void CommentThreadModel::reload()
{
    updateRows(takeRows());
}

bool CommentThreadModel::sameContents(const Row &a, const Row &b)
{
    const CommentCellDetail &x = a.detail;
    const CommentCellDetail &y = b.detail;
    const auto paths = [](const QList<MediaPtr> &media) {
        QStringList out;
        for (const MediaPtr &m : media)
            out.append(m->path);
        return out;
    };
    return a.day == b.day && x.user == y.user && x.userIconName == y.userIconName && x.text == y.text
        && x.sentDate == y.sentDate && x.kind == y.kind && x.isTaskComment == y.isTaskComment
        && x.isIncident == y.isIncident && x.details == y.details && paths(x.media) == paths(y.media)
        && x.syncMark == y.syncMark;
}

void CommentThreadModel::updateRows(const QList<Row> &rows)
{
    QSet<QString> wanted;
    wanted.reserve(rows.size());
    for (const Row &row : rows)
        wanted.insert(row.key);

    // Gone: removed from the bottom up, a run of rows at a time.
    for (qsizetype row = m_rows.size() - 1; row >= 0; --row) {
        if (wanted.contains(m_rows.at(row).key))
            continue;
        qsizetype first = row;
        while (first > 0 && !wanted.contains(m_rows.at(first - 1).key))
            --first;
        beginRemoveRows({}, int(first), int(row));
        m_rows.remove(first, row - first + 1);
        endRemoveRows();
        row = first;
    }

    QSet<QString> shown;
    shown.reserve(m_rows.size());
    for (const Row &row : std::as_const(m_rows))
        shown.insert(row.key);

    // Then in the new order: new rows are inserted a run at a time, kept ones
    // change in place (rows are kept in time order, so they never move).
    for (qsizetype row = 0; row < rows.size(); ++row) {
        if (!shown.contains(rows.at(row).key)) {
            qsizetype last = row;
            while (last + 1 < rows.size() && !shown.contains(rows.at(last + 1).key))
                ++last;
            beginInsertRows({}, int(row), int(last));
            QList tail = m_rows.mid(row);
            m_rows.resize(row);
            m_rows.append(rows.mid(row, last - row + 1));
            m_rows.append(tail);
            endInsertRows();
            row = last;
            continue;
        }
        if (m_rows.at(row).key != rows.at(row).key) {
            qsizetype from = row + 1;
            while (from < m_rows.size() && m_rows.at(from).key != rows.at(row).key)
                ++from;
            beginMoveRows({}, int(from), int(from), {}, int(row));
            m_rows.move(from, row);
            endMoveRows();
        }
        const bool changed = !sameContents(m_rows.at(row), rows.at(row));
        m_rows[row] = rows.at(row); // positions in the view model's sections may have moved
        if (changed)
            emit dataChanged(index(int(row)), index(int(row)));
    }
    // Rows that came into sight by this change may have pictures to load.
    setRowsInSight(m_inSight.first, m_inSight.second);
}

void CommentThreadModel::setRowsInSight(int first, int last)
{
    const std::pair<int, int> before = m_inSight;
    m_inSight = {first, last};
    if (first < 0)
        return;
    for (int row = first; row <= last && row < m_rows.size(); ++row) {
        if (const std::optional<QString> path = picturePath(row)) {
            // A picture that failed is asked for again when its row comes back.
            const bool cameBack = row < before.first || row > before.second;
            m_thumbnails->request(*path, cameBack);
        }
    }
}

std::optional<QString> CommentThreadModel::picturePath(int row) const
{
    if (row < 0 || row >= m_rows.size() || m_rows.at(row).row < 0 || m_rows.at(row).detail.media.isEmpty())
        return std::nullopt;
    return m_rows.at(row).detail.media.first()->path;
}

std::optional<std::pair<int, int>> CommentThreadModel::commentPosition(int row) const
{
    if (row < 0 || row >= m_rows.size() || m_rows.at(row).row < 0)
        return std::nullopt;
    return std::pair(m_rows.at(row).section, m_rows.at(row).row);
}

int CommentThreadModel::lastCommentRow() const
{
    for (qsizetype row = m_rows.size() - 1; row >= 0; --row) {
        if (m_rows.at(row).row >= 0)
            return int(row);
    }
    return -1;
}

int CommentThreadModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QString CommentThreadModel::initials(const QString &name)
{
    QString out;
    for (const QString &word : name.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        out.append(word.at(0).toUpper());
        if (out.size() == 2)
            break;
    }
    return out;
}

QColor CommentThreadModel::initialsColor(const QString &key) const
{
    // Picked once per author for the life of the model: repainting a row never
    // changes its colour.
    auto found = m_initialsColors.constFind(key);
    if (found != m_initialsColors.constEnd())
        return *found;
    const QColor color = QColor::fromRgbF(0.01f, float(0.2 + 0.8 * m_random.generateDouble()),
                                          float(0.2 + 0.8 * m_random.generateDouble()), 1.0f);
    m_initialsColors.insert(key, color);
    return color;
}

QVariant CommentThreadModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid) || !m_viewModel)
        return {};
    const Row &row = m_rows.at(index.row());
    const QDateTime now = toDateTime(m_clock()).toLocalTime();
    if (row.row < 0) {
        switch (role) {
        case KindRole: return QVariant::fromValue(RowKind::dayHeader);
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole: return elapsedTimeText(row.day, now);
        case IdentifierRole: return QStringLiteral("dayHeader");
        default: return {};
        }
    }
    const CommentCellDetail &detail = row.detail;
    const std::optional<QString> path = picturePath(index.row());
    switch (role) {
    case KindRole: return QVariant::fromValue(RowKind::comment);
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole: return detail.text;
    case IdentifierRole: return QStringLiteral("commentCell");
    case Qt::AccessibleDescriptionRole:
        return detail.user + QStringLiteral(", ") + elapsedTimeText(detail.sentDate, now)
            + (detail.details && !detail.details->isEmpty() ? QStringLiteral(", ") + detail.detailsText().trimmed()
                                                            : QString());
    case AuthorRole: return detail.user;
    case AuthorIconRole: return detail.userIconName;
    case InitialsRole: return initials(detail.user);
    case InitialsColorRole: return initialsColor(detail.user);
    case TimeTextRole: return elapsedTimeText(detail.sentDate, now);
    case ShowsTimeRole: return detail.sentDate.toLocalTime().date() == now.date();
    case DetailsRole: return detail.details ? QVariant::fromValue(*detail.details) : QVariant();
    case HasPictureRole: return path.has_value();
    case PictureFailedRole: return path && m_thumbnails->hasFailed(*path);
    case PictureIdentifierRole: return QStringLiteral("commentImgThumb_") + detail.text;
    case SyncMarkRole: return QVariant::fromValue(detail.syncMark);
    case ThumbnailRole: {
        // Only what is kept: loading is the rows in sight's business.
        const QImage thumbnail = path ? m_thumbnails->thumbnail(*path) : QImage();
        return thumbnail.isNull() ? QVariant() : QVariant(thumbnail);
    }
    default: return {};
    }
}

void CommentThreadModel::thumbnailChanged(const QString &path)
{
    for (int row = 0; row < m_rows.size(); ++row) {
        if (picturePath(row) == path)
            emit dataChanged(index(row), index(row), {ThumbnailRole, PictureFailedRole});
    }
}

Qt::ItemFlags CommentThreadModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

QHash<int, QByteArray> CommentThreadModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(KindRole, "kind");
    names.insert(IdentifierRole, "identifier");
    names.insert(AuthorRole, "author");
    names.insert(AuthorIconRole, "authorIcon");
    names.insert(InitialsRole, "initials");
    names.insert(InitialsColorRole, "initialsColor");
    names.insert(TimeTextRole, "timeText");
    names.insert(ShowsTimeRole, "showsTime");
    names.insert(DetailsRole, "details");
    names.insert(HasPictureRole, "hasPicture");
    names.insert(ThumbnailRole, "thumbnail");
    names.insert(PictureFailedRole, "pictureFailed");
    names.insert(PictureIdentifierRole, "pictureIdentifier");
    names.insert(SyncMarkRole, "syncMark");
    return names;
}

} // namespace ravelin
