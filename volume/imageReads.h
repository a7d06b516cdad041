#pragma once

#include <cstdint>
#include <span>

#include "platform/runtimeError.h"

/// All reads of the image: a sector of the volume is converted to a byte offset, the partition
/// offset is added, and the bytes are read from the image file. Nothing is ever written.
namespace tessel {

/// Returns the byte offset of a sector from the start of the volume, and fills DiskAddress (with
/// the low byte of each value; with zeros when sectors per track or heads is 0). Raises 6 from
/// sector 4194304 on, whose offset does not fit 32 bits.
Long SectorToAddress(Long sector);
/// Reads the 512 bytes of a sector into SectorBuffer. Returns false, without a message, when the
/// read fails.
bool ReadSector(Long sector);

/// Each reads one area into Fat0Bytes, Fat1Bytes or RootDirBytes and replaces the previous content.
/// Sectors have BytesPerSector bytes here. A FAT is read as far as the image file goes, and not
/// beyond the 128 KiB that the largest cluster number needs; the root directory is read in full,
/// with zeros past the end of the image. Raise 6 when an offset does not fit 32 bits, 57 when the
/// medium fails; the bytes before the bad one are kept.
void ReadFat0();
void ReadFat1();
void ReadRootDirectory();

/// Raises the error of a failed read at `offset` of the image file: the error of reading there
/// again, or 57 when that succeeds.
[[noreturn]] void RaiseReadError(std::int64_t offset);

/// Returns the first sector of a cluster. Clusters 0 and 1 give sectors before the data area.
Long ClusterToSector(Long cluster);

/// Returns the offset in the image file of byte `k` of a cluster. Raises 6 when it is not 0 to
/// kLastFileOffset.
std::int64_t ClusterOffset(Long cluster, std::int64_t k);

}  // namespace tessel
