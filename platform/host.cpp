#include "platform/host.h"

namespace tessel {

Host TheHost;

void EventTurns::Take() {
    using namespace std::chrono;
    const auto now = steady_clock::now();
    if (Last != steady_clock::time_point{} && now - Last < milliseconds(8)) return;
    if (TheHost.DoEvents) TheHost.DoEvents();
    Last = steady_clock::now();
}

}  // namespace tessel
