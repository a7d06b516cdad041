#pragma once

#include <cstdint>
#include <span>

#include "platform/runtimeError.h"

/// Every byte of the image comes through here: a sector of the volume becomes a byte offset, the
/// partition offset is added, and the bytes are read from the image file. Nothing is ever written.
namespace tessel {

/// The byte offset of a sector from the start of the volume; fills DiskAddress (the low byte of
/// each value; zeros when sectors per track or heads is 0). Raises 6 past 32 bits, from sector
/// 4194304 on.
Long SectorToAddress(Long sector);
/// Reads 512 bytes into SectorBuffer. False when the read fails; no message.
bool ReadSector(Long sector);

/// Read an area whole into Fat0Bytes, Fat1Bytes or RootDirBytes, whose former content is dropped.
/// Sectors count BytesPerSector bytes here. A FAT is held as far as the image file and its medium
/// give it, and no further than its largest cluster number needs (128 KiB), the root directory in
/// full with zeros for what is missing. Raise 6 past 32 bits, 57 when the medium fails, behind what
/// could be read.
void ReadFat0();
void ReadFat1();
void ReadRootDirectory();

/// Raises the error of a read of the image that has failed at `offset`: what reading there again
/// raises, or 57 when it fails no longer.
[[noreturn]] void RaiseReadError(std::int64_t offset);

/// The first sector of a cluster. Clusters 0 and 1 give sectors in front of the data area.
Long ClusterToSector(Long cluster);

/// Where a byte lies in the image file: `k` bytes behind the start of a cluster. Raises 6.
std::int64_t ClusterOffset(Long cluster, std::int64_t k);

}  // namespace tessel
