#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace ravelin {

// Key the task list is sorted by; the text is also the segment title.
enum class SortKey { name, priority, date };

// Direction of the sort; the text is also the segment title.
enum class SortOrder { ascending, descending };

namespace SortKeys {
[[nodiscard]] const QList<SortKey> &allCases();
[[nodiscard]] QString rawValue(SortKey key);
// The segment title, in the application's language.
[[nodiscard]] QString text(SortKey value);
[[nodiscard]] std::optional<SortKey> fromRawValue(const QString &text);
} // namespace SortKeys

namespace SortOrders {
[[nodiscard]] const QList<SortOrder> &allCases();
[[nodiscard]] QString rawValue(SortOrder order);
// The segment title, in the application's language.
[[nodiscard]] QString text(SortOrder value);
[[nodiscard]] std::optional<SortOrder> fromRawValue(const QString &text);
} // namespace SortOrders

} // namespace ravelin
