#pragma once

#include <cstdint>

#include "platform/runtimeError.h"

/// The layouts of partition tables: byte offsets, all numbers little-endian.
namespace tessel {

/// The master boot record, sector 0 of a disk: boot code, four entries, 55 AA at the end. Each link
/// of the chain of logical partitions is such a sector too: its first entry is the partition,
/// relative to the link, its second the next link, relative to the first.
namespace mbr {
inline constexpr Integer kEntries = 446;
inline constexpr Integer kEntryBytes = 16;
inline constexpr int kPrimaries = 4;  // entries in sector 0
inline constexpr int kInLink = 2;     // entries in a link of the chain

// Fields of an entry.
inline constexpr Integer kStatus = 0;       // 8 bits: 80 if bootable, otherwise 0
inline constexpr Integer kType = 4;         // 8 bits, 0 for an entry not in use
inline constexpr Integer kFirstSector = 8;  // 32 bits
inline constexpr Integer kSectors = 12;     // 32 bits

inline constexpr Byte kStatusBits = 0x7F;  // all 0 in a valid status byte
inline constexpr Byte kExtended[] = {0x05, 0x0F, 0x85};
inline constexpr Byte kProtective = 0xEE;  // covers a whole disk with a GPT
}  // namespace mbr

/// The GUID partition table: a header in the disk's second sector, with a copy in its last, and
/// entries at the sector that the header gives.
namespace gpt {
inline constexpr std::int64_t kHeaderSector = 1;
inline constexpr char kSignature[] = "EFI PART";  // its first 8 bytes
inline constexpr Integer kHeaderBytes = 12;       // 32 bits: the length that its checksum covers
inline constexpr Integer kHeaderChecksum = 16;    // 32 bits, 0 while it is computed
inline constexpr Integer kEntriesSector = 72;     // 64 bits
inline constexpr Integer kEntryCount = 80;        // 32 bits
inline constexpr Integer kEntryBytes = 84;        // 32 bits
inline constexpr Integer kEntriesChecksum = 88;   // 32 bits
inline constexpr Integer kHeaderEnd = 92;         // the rest is reserved

// The usual values.
inline constexpr std::int64_t kUsualEntriesSector = 2;
inline constexpr std::int64_t kUsualEntryCount = 128;
inline constexpr std::int64_t kUsualEntryBytes = 128;

// Fields of an entry.
inline constexpr Integer kType = 0;  // a GUID, all 0 for an entry not in use
inline constexpr Integer kTypeLength = 16;
inline constexpr Integer kFirstSector = 32;  // 64 bits
inline constexpr Integer kLastSector = 40;   // 64 bits, inclusive
inline constexpr Integer kName = 56;         // 36 units of UTF-16, ended by 0
inline constexpr Integer kNameUnits = 36;
}  // namespace gpt

}  // namespace tessel
