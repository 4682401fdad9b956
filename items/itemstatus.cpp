#include "items/itemstatus.h"

#include <QCoreApplication>

#include "api/fatalerror.h"

namespace ravelin::ItemStatuses {

const QList<ItemStatus> &allCases()
{
    static const QList<ItemStatus> cases{ItemStatus::ok, ItemStatus::nok, ItemStatus::open, ItemStatus::all};
    return cases;
}

QString rawValue(ItemStatus status)
{
    switch (status) {
    case ItemStatus::ok: return QStringLiteral("Completed");
    case ItemStatus::nok: return QStringLiteral("Incidents");
    case ItemStatus::open: return QStringLiteral("Open");
    case ItemStatus::all: return QStringLiteral("All");
    }
    return {};
}

std::optional<ItemStatus> fromRawValue(const QString &text)
{
    for (ItemStatus s : allCases()) {
        if (rawValue(s) == text)
            return s;
    }
    return std::nullopt;
}

ItemStatus fromServerId(qint64 id)
{
    if (id < 1 || id > allCases().size())
        fatalError(QStringLiteral("Item status id %1 is outside 1...4").arg(id), "ItemStatus");
    return allCases().at(id - 1);
}

int serverId(ItemStatus status)
{
    return int(allCases().indexOf(status)) + 1;
}

ItemStatus fromSegmentIndex(qint64 index)
{
    if (index < 0 || index >= allCases().size())
        fatalError(QStringLiteral("Item status segment %1 is outside 0...3").arg(index), "ItemStatus");
    return allCases().at(index);
}

int segmentIndex(ItemStatus status)
{
    return int(allCases().indexOf(status));
}

// The texts a translation catalogue holds for ItemStatus.
[[maybe_unused]] constexpr const char *itemStatusTexts[]
    = {QT_TRANSLATE_NOOP("ItemStatus", "Completed"), QT_TRANSLATE_NOOP("ItemStatus", "Incidents"),
       QT_TRANSLATE_NOOP("ItemStatus", "Open"), QT_TRANSLATE_NOOP("ItemStatus", "All")};

QString text(ItemStatus value)
{
    return QCoreApplication::translate("ItemStatus", rawValue(value).toUtf8().constData());
}

} // namespace ravelin::ItemStatuses
