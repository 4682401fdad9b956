#include "comments/commentthreadmodel.h"

#include "comments/commentsvm.h"
#include "comments/commenttableviewcellvm.h"
#include "comments/elapsedtime.h"

namespace ravelin {

CommentThreadModel::CommentThreadModel(Clock clock, QObject *parent)
    : QAbstractListModel(parent)
    , m_clock(std::move(clock))
{ }

CommentThreadModel::~CommentThreadModel() = default;

void CommentThreadModel::setViewModel(CommentsVM *viewModel)
{
    m_viewModel = viewModel;
    reload();
}

void CommentThreadModel::reload()
{
    beginResetModel();
    m_rows.clear();
    // Pictures that could not be had are tried again with the next answer.
    m_failed.clear();
    if (m_viewModel) {
        for (int section = 0; section < m_viewModel->numberOfSections(); ++section) {
            const CommentSection &day = m_viewModel->section(section);
            m_rows.append(Row{section, -1, day.date, {}});
            for (int row = 0; row < day.comments.size(); ++row)
                m_rows.append(
                    Row{section, row, {}, CommentCellDetail::make(*day.comments.at(row), *m_viewModel->task())});
        }
    }
    endResetModel();
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
    const std::optional<QString> path
        = detail.media.isEmpty() ? std::nullopt : std::optional(detail.media.first()->path);
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
    case PictureFailedRole: return path && m_failed.contains(*path);
    case PictureIdentifierRole: return QStringLiteral("commentImgThumb_") + detail.text;
    case ThumbnailRole: {
        if (!path)
            return {};
        const auto cached = m_thumbnails.constFind(*path);
        if (cached != m_thumbnails.constEnd())
            return *cached;
        loadThumbnail(index.row(), *path);
        return {};
    }
    default: return {};
    }
}

void CommentThreadModel::loadThumbnail(int rowIndex, const QString &path) const
{
    if (m_loading.contains(path) || m_failed.contains(path) || !m_viewModel)
        return;
    const Row &row = m_rows.at(rowIndex);
    std::shared_ptr<CommentTableViewCellVM> cell = m_viewModel->cellViewModel(row.section, row.row);
    m_loading.insert(path, cell);
    auto *self = const_cast<CommentThreadModel *>(this);
    // The request is tied to the cell view model, which the model keeps until
    // the answer: when the model goes, nothing calls back.
    cell->loadThumbnail(
        [self, path](std::optional<QImage> picture) { self->thumbnailArrived(path, std::move(picture)); });
}

void CommentThreadModel::thumbnailArrived(const QString &path, std::optional<QImage> picture)
{
    // Keep the request's view model alive until this call is over.
    const std::shared_ptr<CommentTableViewCellVM> finished = m_loading.take(path);
    if (picture && !picture->isNull())
        m_thumbnails.insert(path, *picture);
    else
        m_failed.insert(path);
    for (int row = 0; row < m_rows.size(); ++row) {
        const CommentCellDetail &detail = m_rows.at(row).detail;
        if (m_rows.at(row).row >= 0 && !detail.media.isEmpty() && detail.media.first()->path == path)
            emit dataChanged(index(row), index(row), {ThumbnailRole, PictureFailedRole});
    }
    emit thumbnailChanged(path);
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
    return names;
}

} // namespace ravelin
