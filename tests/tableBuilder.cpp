#include "tests/tableBuilder.h"

#include <algorithm>

namespace tessel::images {
namespace {

/// The CRC-32 of a part of a disk, bit by bit.
std::uint32_t Crc(const Bytes& bytes, std::size_t at, std::size_t size) {
    std::uint32_t sum = ~0U;
    for (std::size_t i = at * 8; i < (at + size) * 8; ++i) {
        const std::uint32_t byte = bytes[i / 8];
        const bool bit = ((sum ^ byte >> i % 8) & 1) != 0;
        sum = bit ? sum >> 1 ^ 0xEDB88320 : sum >> 1;
    }
    return ~sum;
}

}  // namespace

void PutNumber(Bytes& disk, std::size_t at, std::uint64_t value, int width) {
    for (int i = 0; i < width; ++i, value >>= 8) disk[at++] = value & 255;
}

void PutVolume(Bytes& disk, std::size_t sector, const std::string& label) {
    Image image({.SmallSectors = 100});
    image.Poke(43, label);
    std::copy_n(image.Volume.begin(), 2048,
                disk.begin() + static_cast<std::ptrdiff_t>(sector * 512));
}

void PutMbr(Bytes& disk, std::size_t sector, const std::vector<MbrEntry>& entries) {
    std::size_t at = sector * 512 + 446;
    for (const auto& [status, type, start, count] : entries) {
        PutNumber(disk, at, static_cast<unsigned>(status), 1);
        PutNumber(disk, at + 4, static_cast<unsigned>(type), 1);
        PutNumber(disk, at + 8, start, 4);
        PutNumber(disk, at + 12, count, 4);
        at += 16;
    }
    PutNumber(disk, sector * 512 + 510, 0xAA55, 2);
}

void PutGptHeader(Bytes& disk, std::size_t at, const GptHeader& header,
                  std::size_t bytesPerSector) {
    const std::string mark = "EFI PART";
    std::copy(mark.begin(), mark.end(), disk.begin() + static_cast<std::ptrdiff_t>(at));
    PutNumber(disk, at + 12, 92, 4);
    PutNumber(disk, at + 16, 0, 4);
    PutNumber(disk, at + 72, header.EntriesSector, 8);
    PutNumber(disk, at + 80, header.Count, 4);
    PutNumber(disk, at + 84, header.EntryBytes, 4);
    const std::size_t bytes = header.Count * header.EntryBytes;
    const std::size_t start = header.EntriesSector * bytesPerSector;
    if (start + bytes <= disk.size()) PutNumber(disk, at + 88, Crc(disk, start, bytes), 4);
    PutNumber(disk, at + 16, Crc(disk, at, 92), 4);
}

void PutGptEntry(Bytes& disk, std::size_t at, std::uint64_t firstSector, std::uint64_t lastSector,
                 const std::u16string& name) {
    PutNumber(disk, at, 1, 16);
    PutNumber(disk, at + 32, firstSector, 8);
    PutNumber(disk, at + 40, lastSector, 8);
    for (std::size_t i = 0; i < name.size(); ++i) PutNumber(disk, at + 56 + 2 * i, name[i], 2);
}

}  // namespace tessel::images
