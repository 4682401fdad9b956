#pragma once

#include "api/clock.h"
#include "api/outboxentry.h"
#include "api/pendingresults.h"

#include <QString>

namespace ravelin {

// The texts of work kept without a connection: the state of a screen opened
// from the cache, the count of results not on the server yet, the marks on
// rows and cards, and the lines of the "Not sent" list. Free of any widget.
namespace SyncTexts {

// "Offline · updated 10 min ago": a screen shows what the server said then.
[[nodiscard]] QString offlinePrompt(TimePoint updatedAt, TimePoint now);
// "3 waiting", "3 waiting · 1 not sent", "1 not sent"; empty when there is nothing.
[[nodiscard]] QString countText(int waiting, int refused);
// "Waiting" or "Not sent"; empty for none.
[[nodiscard]] QString markText(SyncMark mark);
// One result as the "Not sent" list shows it: what it is, and its state (with
// the server's reason when it was refused).
[[nodiscard]] QString entrySummary(const OutboxEntry &entry);
[[nodiscard]] QString entryState(const OutboxEntry &entry);

} // namespace SyncTexts

} // namespace ravelin
