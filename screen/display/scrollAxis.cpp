#include "screen/display/scrollAxis.h"

#include <QScrollBar>
#include <algorithm>

namespace tessel {
namespace {

constexpr std::int64_t kMaxBarValue = 1'000'000'000;

}  // namespace

ScrollAxis::ScrollAxis(QScrollBar* bar, std::function<void()> moved)
    : Bar(bar), Moved(std::move(moved)) {
    QObject::connect(bar, &QScrollBar::actionTriggered, bar,
                     [this](int action) { StepExactly(action); });
}

void ScrollAxis::SetRange(std::int64_t maximum, std::int64_t page) {
    const std::int64_t old = At;
    Maximum = std::max<std::int64_t>(maximum, 0);
    Page = std::max<std::int64_t>(page, 1);
    Unit = Maximum / kMaxBarValue + 1;
    At = std::clamp<std::int64_t>(At, 0, Maximum);
    Setting = true;
    Bar->setRange(0, static_cast<int>(Maximum / Unit));
    Bar->setPageStep(static_cast<int>(std::max<std::int64_t>(Page / Unit, 1)));
    Bar->setValue(BarValue());
    Setting = false;
    if (At != old) Moved();
}

void ScrollAxis::MoveTo(std::int64_t position) {
    position = std::clamp<std::int64_t>(position, 0, Maximum);
    if (position == At) return;
    At = position;
    Setting = true;
    Bar->setValue(BarValue());
    Setting = false;
    Moved();
}

void ScrollAxis::FollowBar() {
    if (Setting || Bar->value() == BarValue()) return;
    MoveTo(Bar->value() == Bar->maximum() ? Maximum : Bar->value() * Unit);
}

void ScrollAxis::StepExactly(int action) {
    // The bar itself would step by whole units.
    switch (action) {
        case QAbstractSlider::SliderSingleStepAdd:
            MoveTo(At + 1);
            break;
        case QAbstractSlider::SliderSingleStepSub:
            MoveTo(At - 1);
            break;
        case QAbstractSlider::SliderPageStepAdd:
            MoveTo(At + Page);
            break;
        case QAbstractSlider::SliderPageStepSub:
            MoveTo(At - Page);
            break;
        default:
            return;
    }
    Bar->setSliderPosition(BarValue());
}

}  // namespace tessel
