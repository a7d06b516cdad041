#pragma once

#include <cstdint>
#include <functional>

class QScrollBar;

namespace tessel {

/// One direction of scrolling with 64-bit positions. The position is exact; the scroll bar, which
/// counts in int, shows it in units of one or more positions.
class ScrollAxis {
  public:
    /// `moved` is called whenever the position changes.
    ScrollAxis(QScrollBar* bar, std::function<void()> moved);

    std::int64_t Position() const { return At; }
    /// Sets the range of positions, 0 to `maximum`, and the size of a page. Clamps the position.
    void SetRange(std::int64_t maximum, std::int64_t page);
    /// Moves to `position`, clamped to the range.
    void MoveTo(std::int64_t position);
    /// Moves to the bar's value; called when the user has dragged the bar.
    void FollowBar();

  private:
    int BarValue() const { return static_cast<int>(At / Unit); }
    void StepExactly(int action);

    QScrollBar* Bar;
    std::function<void()> Moved;
    std::int64_t At = 0;
    std::int64_t Maximum = 0;
    std::int64_t Page = 1;
    std::int64_t Unit = 1;
    bool Setting = false;
};

}  // namespace tessel
