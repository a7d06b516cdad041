#include "volume/fatEntries.h"

#include "volume/volumeState.h"

namespace tessel {

Long GetFat12Entry(ByteBuffer fat, Long cluster) {
    const Long pair = GetWideWord(fat, CheckedLong(std::int64_t{cluster} * 12 / 8));
    return (cluster % 2 == 0 ? pair : pair / 16) & 4095;
}

Long GetFat16Entry(ByteBuffer fat, Long cluster) {
    return GetWideWord(fat, CheckedLong(std::int64_t{cluster} * 2));
}

Long WholeFatEntries(ByteBuffer fat, Long bits) {
    const auto bytes = static_cast<std::int64_t>(fat.size());
    if (bits == 16) return CheckedLong(bytes / 2);
    if (bytes < 2) return 0;
    // Entry c is part of the word at 3c/2, which must end inside the FAT.
    const std::int64_t lastWord = bytes - 2;
    return CheckedLong(lastWord / 3 * 2 + (lastWord % 3 > 0 ? 2 : 1));
}

Long NextCluster(Long cluster) {
    if (FatType != 12 && FatType != 16) return 0;
    const bool outside = cluster < 0 || cluster >= Drives[1].ClusterCount ||
                         cluster >= WholeFatEntries(Fat0Bytes, FatType);
    if (outside) return FatEndMark;
    return FatType == 12 ? GetFat12Entry(Fat0Bytes, cluster) : GetFat16Entry(Fat0Bytes, cluster);
}

}  // namespace tessel
