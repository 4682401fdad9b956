#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace ravelin {

// Status of a checklist item, and the selection the item list is filtered by.
// The text is shown in messages and swipe actions; the server id is the
// one-based position in allCases, the filter segment index the zero-based one.
// `all` never comes from the server: it is the "show every item" selection.
enum class ItemStatus { ok, nok, open, all };

namespace ItemStatuses {
[[nodiscard]] const QList<ItemStatus> &allCases();
[[nodiscard]] QString rawValue(ItemStatus status);
// The text shown to the worker, in the application's language.
[[nodiscard]] QString text(ItemStatus value);
[[nodiscard]] std::optional<ItemStatus> fromRawValue(const QString &text);
// Server id 1..4; any other id stops the process.
[[nodiscard]] ItemStatus fromServerId(qint64 id);
[[nodiscard]] int serverId(ItemStatus status);
// Filter segment 0..3; any other index (no segment selected) stops the process.
[[nodiscard]] ItemStatus fromSegmentIndex(qint64 index);
[[nodiscard]] int segmentIndex(ItemStatus status);
} // namespace ItemStatuses

} // namespace ravelin
