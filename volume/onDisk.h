#pragma once

#include "platform/runtimeError.h"

/// The on-disk layouts as byte offsets; all numbers are little-endian.
namespace tessel {

/// The sector size for the boot sector, directory entries and file data, whatever the boot sector
/// says.
inline constexpr Long kSectorBytes = 512;

/// The boot sector, 512 bytes.
namespace boot {
inline constexpr Integer kOemId = 3;                // 8 characters
inline constexpr Integer kBytesPerSector = 11;      // 16 bits
inline constexpr Integer kSectorsPerCluster = 13;   // 8 bits
inline constexpr Integer kReservedSectors = 14;     // 16 bits
inline constexpr Integer kNumberOfFats = 16;        // 8 bits
inline constexpr Integer kRootEntries = 17;         // 16 bits
inline constexpr Integer kSmallSectors = 19;        // 16 bits, 0 when the count needs 32
inline constexpr Integer kMediaType = 21;           // 8 bits
inline constexpr Integer kSectorsPerFat = 22;       // 16 bits
inline constexpr Integer kSectorsPerTrack = 24;     // 16 bits
inline constexpr Integer kNumberOfHeads = 26;       // 16 bits
inline constexpr Integer kHiddenSectors = 28;       // 32 bits, signed
inline constexpr Integer kLargeSectors = 32;        // 32 bits, signed
inline constexpr Integer kPhysicalDiskNumber = 36;  // 8 bits
inline constexpr Integer kCurrentHead = 37;         // 8 bits
inline constexpr Integer kSignature = 38;           // 8 bits, the extended boot signature
inline constexpr Integer kVolSerialNumber = 39;     // 32 bits, signed
inline constexpr Integer kVolumeLabel = 43;         // 11 characters
inline constexpr Integer kSystemId = 54;            // 8 characters
inline constexpr Integer kBootSignature = 510;      // 16 bits, 55 AA on the disk

inline constexpr Integer kOemIdLength = 8;
inline constexpr Integer kVolumeLabelLength = 11;
inline constexpr Integer kSystemIdLength = 8;
inline constexpr Long kBootSignatureValue = 0xAA55;
inline constexpr Long kLabelledSignature =
    0x29;  // serial number, label and system identifier follow
}  // namespace boot

/// A directory entry, 32 bytes.
namespace entry {
inline constexpr Long kBytes = 32;
inline constexpr Long kPerSector = kSectorBytes / kBytes;

inline constexpr Integer kName = 0;           // 8 characters
inline constexpr Integer kExt = 8;            // 3 characters
inline constexpr Integer kAttributes = 11;    // 8 bits
inline constexpr Integer kReserved = 12;      // 8 bits
inline constexpr Integer kCreateTenths = 13;  // 8 bits
inline constexpr Integer kCreateTime = 14;    // 16 bits
inline constexpr Integer kCreateDate = 16;    // 16 bits
inline constexpr Integer kAccessDate = 18;    // 16 bits
inline constexpr Integer kClusterHigh = 20;   // 16 bits, 0 on FAT12 and FAT16
inline constexpr Integer kModifyTime = 22;    // 16 bits
inline constexpr Integer kModifyDate = 24;    // 16 bits
inline constexpr Integer kStartCluster = 26;  // 16 bits
inline constexpr Integer kFileSize = 28;      // 32 bits, signed

/// A long-name entry's characters, 16 bits each, in name order.
inline constexpr Integer kLongNameUnits[13] = {1, 3, 5, 7, 9, 14, 16, 18, 20, 22, 24, 28, 30};

inline constexpr Byte kEnd = 0x00;      // first byte: the directory ends here
inline constexpr Byte kDeleted = 0xE5;  // first byte: the entry is deleted
inline constexpr Long kLastPart = 64;   // bit of a long-name entry's sequence byte
}  // namespace entry

/// Attribute bits of a directory entry.
namespace attribute {
inline constexpr Long kReadOnly = 1;
inline constexpr Long kHidden = 2;
inline constexpr Long kSystem = 4;
inline constexpr Long kVolumeLabel = 8;
inline constexpr Long kDirectory = 16;
inline constexpr Long kArchive = 32;
inline constexpr Long kLongName = 15;  // all of the first four
}  // namespace attribute

}  // namespace tessel
