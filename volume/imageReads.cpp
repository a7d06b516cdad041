#include "volume/imageReads.h"

#include <algorithm>

#include "platform/numberedFiles.h"
#include "volume/onDisk.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

/// The offset of `sector` in the image file, in sectors of BytesPerSector bytes.
std::int64_t AreaOffset(Long sector) {
    const Long inVolume = CheckedLong(std::int64_t{sector} * BootSector.BytesPerSector);
    return CheckedLong(std::int64_t{PartitionOffset} + inVolume);
}

/// The largest FAT with 12-bit or 16-bit entries, whatever the boot sector says.
constexpr std::int64_t kLongestFat = std::int64_t{65536} * 2;

void ReadFat(PageBytes& fat, Long sector) {
    fat.clear();
    const std::int64_t offset = AreaOffset(sector);
    const Long stated =
        CheckedLong(std::int64_t{BootSector.BytesPerSector} * BootSector.SectorsPerFat);
    // The image may be shorter than the boot sector says: memory is allocated only for its bytes.
    const std::int64_t available = FileLength(kImageFile) - offset;
    const std::int64_t wanted = std::min<std::int64_t>(stated, kLongestFat);
    fat.resize(static_cast<std::size_t>(std::clamp<std::int64_t>(available, 0, wanted)));
    const std::size_t good = ReadFileUpTo(kImageFile, offset, fat);
    if (good < fat.size()) {
        fat.resize(good);
        RaiseReadError(offset + static_cast<std::int64_t>(good));
    }
}

}  // namespace

Long SectorToAddress(Long sector) {
    const Long address = CheckedLong(std::int64_t{sector} * kSectorBytes);
    const Long perTrack = Drives[1].SectorsPerTrack;
    const Long heads = Drives[1].Heads;
    DiskAddress = {.SectorCount = 1, .ByteOffset = address};
    if (perTrack != 0 && heads != 0) {
        DiskAddress.Sector = static_cast<Byte>(sector % perTrack);
        DiskAddress.Track = static_cast<Byte>(sector / perTrack / heads);
        DiskAddress.Head = static_cast<Byte>(sector / perTrack % heads);
    }
    return address;
}

bool ReadSector(Long sector) {
    const Long address = SectorToAddress(sector);
    try {
        ReadFile(kImageFile, std::int64_t{PartitionOffset} + address, SectorBuffer);
        return true;
    } catch (const RuntimeError&) {
        return false;
    }
}

void ReadFat0() { ReadFat(Fat0Bytes, Drives[1].Fat0Sector); }
void ReadFat1() { ReadFat(Fat1Bytes, Drives[1].Fat1Sector); }

void ReadRootDirectory() {
    RootDirBytes.assign(static_cast<std::size_t>(BootSector.RootEntries) * entry::kBytes, 0);
    if (!RootDirBytes.empty()) {
        ReadFile(kImageFile, AreaOffset(Drives[1].RootDirSector), RootDirBytes);
    }
}

void RaiseReadError(std::int64_t offset) {
    Byte byte = 0;
    ReadFile(kImageFile, offset, {&byte, 1});
    Raise(kDeviceIoError);  // the second read succeeded
}

Long ClusterToSector(Long cluster) {
    return CheckedLong((std::int64_t{cluster} - 2) * BootSector.SectorsPerCluster +
                       Drives[1].DataSector);
}

std::int64_t ClusterOffset(Long cluster, std::int64_t k) {
    const std::int64_t offset =
        std::int64_t{PartitionOffset} + SectorToAddress(ClusterToSector(cluster)) + k;
    if (offset < 0 || offset > kLastFileOffset) Raise(kOverflow);
    return offset;
}

}  // namespace tessel
