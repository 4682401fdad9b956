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
    QString text = ItemStatuses::rawValue(item.status);
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
    return QString::number(count) + QStringLiteral(" Total");
}

QString acceptedText(qsizetype count)
{
    return QString::number(count) + QLatin1Char(' ') + ItemStatuses::rawValue(ItemStatus::ok);
}

QString rejectedText(qsizetype count)
{
    return QString::number(count) + QLatin1Char(' ') + ItemStatuses::rawValue(ItemStatus::nok);
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
    const QString noun = names.size() == 1 ? QStringLiteral("Item") : QStringLiteral("Items");
    ItemsAlert alert;
    alert.title
        = noun + (success ? QStringLiteral(" Status Successfully Updated!") : QStringLiteral(" Status Update Failed!"));
    alert.attributedMessage.append(QStringLiteral("\n ") + noun + QStringLiteral(":\n\n"), systemFont(12, QFont::Thin));
    alert.attributedMessage.append(names.join(QLatin1Char('\n')), systemFont(12, QFont::Normal));
    return alert;
}

ItemsAlert taskCompleted(const QString &taskName)
{
    return {QStringLiteral("Task successfully completed!"),
            QStringLiteral("\n  The task status ") + taskName + QStringLiteral(" was changed to `Complete`\n "),
            {}};
}

ItemsAlert taskBlocked(const QString &taskName)
{
    return {QStringLiteral("Task marked as blocked!"),
            QStringLiteral("\n  The task status ") + taskName + QStringLiteral(" was changed to `Blocked`\n "),
            {}};
}

} // namespace ravelin::ItemsTexts
