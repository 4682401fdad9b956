#include "filter/sortkey.h"

#include <QCoreApplication>

namespace ravelin {

namespace SortKeys {

const QList<SortKey> &allCases()
{
    static const QList<SortKey> cases{SortKey::name, SortKey::priority, SortKey::date};
    return cases;
}

QString rawValue(SortKey key)
{
    switch (key) {
    case SortKey::name: return QStringLiteral("Name");
    case SortKey::priority: return QStringLiteral("Priority");
    case SortKey::date: return QStringLiteral("Date");
    }
    return {};
}

std::optional<SortKey> fromRawValue(const QString &text)
{
    for (SortKey k : allCases()) {
        if (rawValue(k) == text)
            return k;
    }
    return std::nullopt;
}

// The texts a translation catalogue holds for SortKey.
[[maybe_unused]] constexpr const char *sortKeyTexts[]
    = {QT_TRANSLATE_NOOP("SortKey", "Name"), QT_TRANSLATE_NOOP("SortKey", "Priority"),
       QT_TRANSLATE_NOOP("SortKey", "Date")};

QString text(SortKey value)
{
    return QCoreApplication::translate("SortKey", rawValue(value).toUtf8().constData());
}

} // namespace SortKeys

namespace SortOrders {

const QList<SortOrder> &allCases()
{
    static const QList<SortOrder> cases{SortOrder::ascending, SortOrder::descending};
    return cases;
}

QString rawValue(SortOrder order)
{
    return order == SortOrder::ascending ? QStringLiteral("Ascending") : QStringLiteral("Descending");
}

std::optional<SortOrder> fromRawValue(const QString &text)
{
    for (SortOrder o : allCases()) {
        if (rawValue(o) == text)
            return o;
    }
    return std::nullopt;
}

// The texts a translation catalogue holds for SortOrder.
[[maybe_unused]] constexpr const char *sortOrderTexts[]
    = {QT_TRANSLATE_NOOP("SortOrder", "Ascending"), QT_TRANSLATE_NOOP("SortOrder", "Descending")};

QString text(SortOrder value)
{
    return QCoreApplication::translate("SortOrder", rawValue(value).toUtf8().constData());
}

} // namespace SortOrders

} // namespace ravelin
