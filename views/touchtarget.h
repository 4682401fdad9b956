#pragma once

#include <QRect>

#include <algorithm>

namespace ravelin {

// The least room a control needs to be hit by a finger: 44 by 44
// device-independent pixels, whatever it draws. Controls drawn smaller take
// taps in a larger rectangle around what they draw.
namespace TouchTarget {

inline constexpr int minimumSide = 44;

// `drawn` grown evenly to at least the minimum side each way, then moved (not
// shrunk) to stay inside `within` where it fits there.
[[nodiscard]] inline QRect around(const QRect &drawn, const QRect &within)
{
    const int width = std::max(drawn.width(), minimumSide);
    const int height = std::max(drawn.height(), minimumSide);
    QRect target(0, 0, width, height);
    target.moveCenter(drawn.center());
    if (width <= within.width())
        target.moveLeft(std::clamp(target.left(), within.left(), within.right() + 1 - width));
    if (height <= within.height())
        target.moveTop(std::clamp(target.top(), within.top(), within.bottom() + 1 - height));
    return target;
}

} // namespace TouchTarget

} // namespace ravelin
