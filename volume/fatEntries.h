#pragma once

#include "platform/runtimeError.h"
#include "util/byteFields.h"

/// FAT entries, and the next cluster of a chain.
namespace tessel {

/// Returns the 12-bit entry of a cluster: two entries share three bytes. Raises 9 outside the FAT.
Long GetFat12Entry(ByteBuffer fat, Long cluster);
/// Returns the 16-bit entry of a cluster, in a FAT of any length. Raises 9 outside the FAT.
Long GetFat16Entry(ByteBuffer fat, Long cluster);
/// Returns the number of complete entries of 12 or 16 bits in `fat`.
Long WholeFatEntries(ByteBuffer fat, Long bits);

/// Returns the FAT entry of `cluster`: the next cluster of its chain, or FatEndMark. A cluster at
/// or beyond ClusterCount, or whose entry is beyond the end of Fat0Bytes, ends the chain. Returns 0
/// for a FAT type other than 12 and 16.
Long NextCluster(Long cluster);

}  // namespace tessel
