#pragma once

#include "platform/runtimeError.h"
#include "util/byteFields.h"

/// FAT entries, and the one step of a chain.
namespace tessel {

/// The 12-bit entry of a cluster: two entries share three bytes. Raises 9 outside the FAT.
Long GetFat12Entry(ByteBuffer fat, Long cluster);
/// The 16-bit entry of a cluster, in a FAT of any length. Raises 9 outside the FAT.
Long GetFat16Entry(ByteBuffer fat, Long cluster);
/// How many whole entries of 12 or 16 bits `fat` holds.
Long WholeFatEntries(ByteBuffer fat, Long bits);

/// The next cluster of a chain, or FatEndMark. A cluster at or beyond ClusterCount, and one whose
/// entry lies beyond what the image holds of the first FAT, ends the chain. 0 for a FAT type other
/// than 12 and 16.
Long NextCluster(Long cluster);

}  // namespace tessel
