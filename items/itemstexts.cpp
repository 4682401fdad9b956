#include "items/itemstexts.h"

#include <QCoreApplication>
#include <QLocale>

namespace ravelin::ItemsTexts {

namespace {

QFont systemFont(int pointSize, QFont::Weight weight)
{
    QFont font;
    font.setPointSize(pointSize);
    font.setWeight(weight);
    return font;
}

} // namespace

QString itemIdentifier(const Item &item)
{
    return QStringLiteral("itemCell_") + QString::number(item.id);
}

QString rowDescription(const Item &item)
{
    QString text = ItemStatuses::text(item.status);
    if (item.qrCode)
        text += QCoreApplication::translate("ItemsTexts", ", QR code");
    if (!item.details.isEmpty())
        text += QStringLiteral(". ") + item.details;
    return text;
}

QString statusImageName(ItemStatus status)
{
    switch (status) {
    case ItemStatus::ok: return QStringLiteral("ok");
    case ItemStatus::nok: return QStringLiteral("nok");
    case ItemStatus::open:
    case ItemStatus::all: break;
    }
    return QStringLiteral("open");
}

QList<ItemStatus> swipeActions(const Item &item)
{
    if (item.status != ItemStatus::open)
        return {};
    return {ItemStatus::ok, ItemStatus::nok};
}

Counts counts(const QList<ItemPtr> &filteredItems)
{
    Counts c;
    c.total = filteredItems.size();
    for (const ItemPtr &item : filteredItems) {
        if (item->status == ItemStatus::ok)
            ++c.accepted;
        else if (item->status == ItemStatus::nok)
            ++c.rejected;
    }
    return c;
}

QString totalText(qsizetype count)
{
    return QCoreApplication::translate("ItemsTexts", "%1 Total").arg(count);
}

QString acceptedText(qsizetype count)
{
    return QString::number(count) + QLatin1Char(' ') + ItemStatuses::text(ItemStatus::ok);
}

QString rejectedText(qsizetype count)
{
    return QString::number(count) + QLatin1Char(' ') + ItemStatuses::text(ItemStatus::nok);
}

QString assignedBy(const Task &task, const UsersData &users)
{
    if (const User *owner = users.user(task.ownerId))
        return owner->name;
    return task.ownerAssetName;
}

QString headerDate(const std::optional<QDateTime> &date)
{
    if (!date || !date->isValid())
        return QStringLiteral("–");
    return QLocale(QLocale::English).toString(date->toLocalTime(), QStringLiteral("d MMM yyyy, HH:mm"));
}

ItemsAlert updateResult(const QStringList &names, bool success)
{
    const bool one = names.size() == 1;
    const QString noun
        = one ? QCoreApplication::translate("ItemsTexts", "Item") : QCoreApplication::translate("ItemsTexts", "Items");
    ItemsAlert alert;
    if (success) {
        alert.title = one ? QCoreApplication::translate("ItemsTexts", "Item Status Successfully Updated!")
                          : QCoreApplication::translate("ItemsTexts", "Items Status Successfully Updated!");
    } else {
        alert.title = one ? QCoreApplication::translate("ItemsTexts", "Item Status Update Failed!")
                          : QCoreApplication::translate("ItemsTexts", "Items Status Update Failed!");
    }
    alert.attributedMessage.append(QStringLiteral("\n ") + noun + QStringLiteral(":\n\n"), systemFont(12, QFont::Thin));
    alert.attributedMessage.append(names.join(QLatin1Char('\n')), systemFont(12, QFont::Normal));
    return alert;
}

ItemsAlert savedResult(const QStringList &names)
{
    ItemsAlert alert = updateResult(names, true);
    alert.title = names.size() == 1 ? QCoreApplication::translate("ItemsTexts", "Item Status Saved")
                                    : QCoreApplication::translate("ItemsTexts", "Items Status Saved");
    alert.attributedMessage.append(QStringLiteral("\n\n")
                                       + QCoreApplication::translate("ItemsTexts", "Waiting to be sent to the server."),
                                   systemFont(12, QFont::Thin));
    return alert;
}

ItemsAlert taskCompleted(const QString &taskName)
{
    return {
        QCoreApplication::translate("ItemsTexts", "Task successfully completed!"),
        QStringLiteral("\n  ")
            + QCoreApplication::translate("ItemsTexts", "The task status %1 was changed to `Complete`").arg(taskName)
            + QStringLiteral("\n "),
        {}};
}

ItemsAlert taskBlocked(const QString &taskName)
{
    return {QCoreApplication::translate("ItemsTexts", "Task marked as blocked!"),
            QStringLiteral("\n  ")
                + QCoreApplication::translate("ItemsTexts", "The task status %1 was changed to `Blocked`").arg(taskName)
                + QStringLiteral("\n "),
            {}};
}

} // namespace ravelin::ItemsTexts
