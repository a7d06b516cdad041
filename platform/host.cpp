#include "platform/host.h"

#include <algorithm>
#include <utility>

namespace tessel {

Host TheHost;

namespace {

Progress* Innermost = nullptr;

}  // namespace

void EventPump::Process() {
    using namespace std::chrono;
    const auto now = steady_clock::now();
    if (Last != steady_clock::time_point{} && now - Last < milliseconds(8)) return;
    if (TheHost.DoEvents) TheHost.DoEvents();
    Last = steady_clock::now();
}

Progress::Progress(std::int64_t total, bool hasParts)
    : Outer(std::exchange(Innermost, this)), Total(total), HasParts(hasParts) {}

Progress::~Progress() {
    Innermost = Outer;
    if (Outer == nullptr && TheHost.ShowProgress) TheHost.ShowProgress(std::nullopt);
}

void Progress::Show(std::int64_t done) {
    Done = done;
    if (TheHost.ShowProgress) TheHost.ShowProgress(Fraction(static_cast<double>(done)));
}

double Progress::Fraction(double steps) const {
    const double fraction =
        std::clamp(steps / static_cast<double>(std::max<std::int64_t>(Total, 1)), 0.0, 1.0);
    return Outer == nullptr || !Outer->HasParts
               ? fraction
               : Outer->Fraction(static_cast<double>(Outer->Done) + fraction);
}

}  // namespace tessel
