#pragma once

#include "platform/controls.h"
#include "platform/runtimeError.h"

/// Bringing a volume up: geometry, boot sector, layout, FAT type.
namespace tessel {

/// From this many clusters on a volume is FAT16, and from that many on FAT32.
inline constexpr Long kFirstFat16Count = 4080;
inline constexpr Long kFirstFat32Count = 65520;

/// Sets tracks, heads, sectors per track and both sector sizes of Drives[slot] from the length of
/// the file open under that slot's number. Slot 0 to 3; raises 9 for another, 52 when not open.
void SetDriveGeometry(Integer slot);

/// Reads sector 0 of the volume into BootSectorBytes, which stays as it was when the read fails;
/// that gives false.
bool ReadBootSector();

/// Fills BootSector from BootSectorBytes and derives the layout of Drives[1]. A layout field that
/// cannot be worked out (a division by zero, a value too large) keeps the value that it had.
void ParseBootSector();

/// Whether the bytes 55 AA stand at offset 510 of BootSectorBytes.
bool HasBootSignature();

/// The type that a volume of so many clusters has: 12, 16 or 32.
Long FatTypeOf(Long clusterCount);

/// Records the type (12, 16 or 32; anything else does nothing) and its end mark, and marks the
/// system identifier label: black when the boot sector's text says the same, else blue with
/// "Fat12", "Fat16" or "Fat32".
void SetFatType(Long bits, Label& systemId);

}  // namespace tessel
