#pragma once

namespace tessel {

/// The largest resident size that this process has had so far, in MiB. For measurements only, so
/// the program itself has no use for it.
double PeakMemoryMiB();

}  // namespace tessel
