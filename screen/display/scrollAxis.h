#pragma once

#include <cstdint>
#include <functional>

class QScrollBar;

namespace tessel {

/// One direction of scrolling over more places than a scroll bar can count: the position is exact,
/// and the bar shows it in units of as many places as it takes.
class ScrollAxis {
  public:
    /// `moved` is told whenever the position changes, whoever moved it.
    ScrollAxis(QScrollBar* bar, std::function<void()> moved);

    std::int64_t Position() const { return At; }
    /// Positions go from 0 to `most`; a page is `page` of them. Keeps the position if it can.
    void SetRange(std::int64_t most, std::int64_t page);
    /// Goes to `position`, or to the end that lies in its way.
    void MoveTo(std::int64_t position);
    /// The bar's value has changed: goes where the person dragged it.
    void FollowBar();

  private:
    int BarValue() const { return static_cast<int>(At / Unit); }
    void StepExactly(int action);

    QScrollBar* Bar;
    std::function<void()> Moved;
    std::int64_t At = 0;
    std::int64_t Most = 0;
    std::int64_t Page = 1;
    std::int64_t Unit = 1;
    bool Setting = false;
};

}  // namespace tessel
