#include "drive/peakMemory.h"

#include <windows.h>
// Must follow windows.h.
#include <psapi.h>

namespace tessel {

double PeakMemoryMiB() {
    PROCESS_MEMORY_COUNTERS counters{};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<double>(counters.PeakWorkingSetSize) / (1024 * 1024);
}

}  // namespace tessel
