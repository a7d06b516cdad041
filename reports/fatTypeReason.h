#pragma once

#include <string>

namespace tessel {

/// How the type of the volume was decided, from FatType, BootSector and Drives[1]: the clusters
/// that were counted and the bounds; and, where the boot sector's text or the clusters of the data
/// area stand for another type, that they do.
std::string FatTypeReason();

}  // namespace tessel
