#pragma once

namespace tessel {

/// Returns the peak resident memory of this process so far, in MiB. For measurements.
double PeakMemoryMiB();

}  // namespace tessel
