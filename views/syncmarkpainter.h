#pragma once

#include "api/pendingresults.h"

#include <QFont>
#include <QRect>

class QPainter;

namespace ravelin {

// The mark on a card, row or comment whose result is not on the server yet: a
// small pill reading "Waiting" (amber) or "Not sent" (red).
namespace SyncMarkPainter {

[[nodiscard]] QSize size(SyncMark mark, const QFont &font);
// Paints the pill in a corner of `bounds` (as `corner` says); nothing for none.
// Answers where it went.
QRect paint(QPainter &painter, const QRect &bounds, Qt::Alignment corner, SyncMark mark, const QFont &font);

} // namespace SyncMarkPainter

} // namespace ravelin
