#pragma once

#include <string>

#include "platform/textDisplay.h"

/// The volume's structures as text for the display; all lines end with CR LF. They read memory
/// only.
namespace tessel {

/// Every field of the boot sector on a line of its own, an empty line at the end.
std::string BootSectorInfo();
/// Sector 0 of the volume, 16 bytes a row with their characters.
std::string DumpBootSector();
/// Shows the whole root directory in the same form, whatever the display held before.
void DumpRootDirectory(TextDisplay& display);
/// The first FAT as a table of entry values, 16 clusters a row; the last row may be short and has
/// then no line end. Where the image does not hold the whole FAT, a line in place of the missing
/// entries says so.
std::string DumpFat0();

}  // namespace tessel
