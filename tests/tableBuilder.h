#pragma once

#include "tests/imageBuilder.h"

/// Partition tables, valid or damaged, built in memory without the program's code.
namespace tessel::images {

/// Puts a little-endian number into `width` bytes; 0 beyond 8 of them.
void PutNumber(Bytes& disk, std::size_t at, std::uint64_t value, int width);

/// Puts the first 4 sectors of a FAT12 volume of 100 sectors into a disk, from sector `sector` on.
/// `label` has 11 characters.
void PutVolume(Bytes& disk, std::size_t sector, const std::string& label);

struct MbrEntry {
    int Status, Type;
    std::uint64_t Start, Count;  // sectors
};

/// Puts a master boot record, or a link of a chain, into a sector.
void PutMbr(Bytes& disk, std::size_t sector, const std::vector<MbrEntry>& entries);

struct GptHeader {
    std::uint64_t EntriesSector = 2, Count = 128, EntryBytes = 128;
};

/// Puts a GPT header with the checksums of the disk's current content.
void PutGptHeader(Bytes& disk, std::size_t at, const GptHeader& header = {},
                  std::size_t bytesPerSector = 512);
void PutGptEntry(Bytes& disk, std::size_t at, std::uint64_t firstSector, std::uint64_t lastSector,
                 const std::u16string& name = u"");

}  // namespace tessel::images
