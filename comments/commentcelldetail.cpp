#include "comments/commentcelldetail.h"

#include <QCoreApplication>

namespace ravelin {

namespace {

DetailFragment fragment(bool incident, QString text)
{
    return incident
        ? DetailFragment{QStringLiteral("nok"), QStringLiteral("CustomRed"), QColor(255, 59, 48), 0.8, std::move(text)}
        : DetailFragment{QStringLiteral("ok"), QStringLiteral("CustomGreen"), QColor(52, 199, 89), 0.8,
                         std::move(text)};
}

} // namespace

CommentCellDetail CommentCellDetail::make(const Comment &comment, const Task &task)
{
    CommentCellDetail d;
    d.user = comment.assetName;
    d.userIconName = comment.assetIcon;
    d.text = comment.text.value_or(QString());
    d.sentDate = comment.dateCreated;
    d.media = comment.media;
    d.isTaskComment = comment.itemIds.isEmpty();
    d.isIncident = comment.isIncident;
    d.syncMark = comment.syncMark;

    if (d.isTaskComment) {
        if (d.isIncident)
            d.details = QList<DetailFragment>{
                fragment(true, QCoreApplication::translate("CommentCellDetail", "Task Marked as Blocked"))};
        return d;
    }
    QList<DetailFragment> fragments;
    for (qint64 id : comment.itemIds) {
        const QList<ItemPtr> &items = task.itemList.items;
        const auto item = std::find_if(items.cbegin(), items.cend(), [id](const ItemPtr &i) { return i->id == id; });
        if (item != items.cend())
            fragments.append(fragment(d.isIncident, (*item)->name + QLatin1Char('\n')));
    }
    d.details = fragments;
    return d;
}

QString CommentCellDetail::detailsText() const
{
    QString text;
    if (details) {
        for (const DetailFragment &f : *details)
            text += f.text;
    }
    return text;
}

} // namespace ravelin
