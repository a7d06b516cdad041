#pragma once

#include <string>

namespace tessel {

/// Explains how the type of the volume was decided, from FatType, BootSector and Drives[1]: the
/// cluster count and the bounds. Adds a warning if the boot sector's text or the clusters of the
/// data area indicate another type.
std::string FatTypeReason();

}  // namespace tessel
