#include "drive/peakMemory.h"

#include <sys/resource.h>

#include <fstream>
#include <string>

namespace tessel {

double PeakMemoryMiB() {
#ifdef __linux__
    // After an exec, getrusage may still report the peak of the program before it.
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kibibytes = 0;
        if (word == "VmHWM:" && status >> kibibytes) return kibibytes / 1024;
    }
    constexpr double kUnitsPerMiB = 1024;
#else
    constexpr double kUnitsPerMiB = 1024 * 1024;
#endif
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / kUnitsPerMiB;
}

}  // namespace tessel
