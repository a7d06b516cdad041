#pragma once

#include <string>
#include <vector>

#include "platform/host.h"
#include "volume/partitionTable.h"

namespace tessel {

/// The lines that the offset box offers: 0 for the whole file, the volumes that can be opened, and
/// the others, which cannot be chosen, with the reason. A line begins with the offset in bytes;
/// parts are three blanks apart. The line of a volume whose offset cannot be entered has a command
/// that cuts it out of the image, whose file name is `imageTitle`.
std::vector<InputChoice> OffsetLines(const PartitionTable& table, const std::string& imageTitle);

}  // namespace tessel
