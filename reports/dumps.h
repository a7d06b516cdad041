#pragma once

#include <string>

#include "platform/textDisplay.h"

/// The structures of the volume as text for the display. Lines end with CR LF. All data comes from
/// memory; nothing is read from the image.
namespace tessel {

/// The fields of the boot sector, one per line, and an empty line.
std::string BootSectorInfo();
/// Sector 0 of the volume as a dump, 16 bytes per line with their characters.
std::string DumpBootSector();
/// Replaces the display's text by a dump of the whole root directory in the same form.
void DumpRootDirectory(TextDisplay& display);
/// The first FAT as a table of entry values, 16 per line; a last line with fewer has no line end.
/// If the image does not contain the whole FAT, a line that says so replaces the missing entries.
std::string DumpFat0();

}  // namespace tessel
