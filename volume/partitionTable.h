#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/runtimeError.h"

/// The partition tables of an image file: which volumes it holds, and where. They only offer
/// offsets; nothing else in the program depends on them.
namespace tessel {

/// The kind of a volume, from its first sector, or the reason why it is unknown.
enum class VolumeKind {
    kNoVolume,  ///< no boot sector of a known kind
    kFat12,     ///< by the rule that Open follows
    kFat16,     ///< likewise
    kFat32,     ///< by that rule, or by a layout that only FAT32 has
    kExFat,
    kNtfs,
    kOutside,     ///< it begins beyond the end of the file
    kBeyondRead,  ///< its first sector ends after the last byte that can be read
    kUnreadable,  ///< the medium fails there
};

/// A volume as a partition table describes it.
struct TableVolume {
    std::int64_t Offset = 0;  ///< bytes from the start of the file
    std::int64_t Size = 0;    ///< bytes; the file may hold fewer
    Byte Type = 0;            ///< the type in a master boot record; 0 in a GPT
    std::string Name{};       ///< the name in a GPT, UTF-8 without control characters
    VolumeKind Kind = VolumeKind::kNoVolume;
    std::string Label{};      ///< FAT12, FAT16: the label in the boot sector, without padding
    Long BytesPerSector = 0;  ///< FAT: from the boot sector
};

struct PartitionTable {
    std::vector<TableVolume> Volumes{};  ///< by offset, without duplicates
    std::int64_t FileBytes = 0;
    bool StartsWithVolume = false;  ///< the file's first sector is a boot sector
};

/// Reads the tables at the start of a file that is open for reading: the four entries of a master
/// boot record, at most 128 logical partitions, and up to 128 KiB of GPT entries. Entries that are
/// not in use or empty are left out; where a table cannot be trusted (a wrong checksum, a missing
/// signature, a boot sector in the same sector) so are those that lead to no known volume. A table
/// that cannot be read has no volumes. Raises nothing, and reads a failing medium no more than a
/// few times.
PartitionTable ReadPartitionTable(int fileNumber);

/// Whether the type of an entry in a master boot record names a chain of logical partitions.
bool IsExtendedType(Byte type);

}  // namespace tessel
