#include "reports/fatTypeReason.h"

#include "util/modUtility.h"
#include "volume/bootSector.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

/// The types by the clusters of the data area, as most systems decide them.
constexpr Long kUsualFirstFat16Count = 4085;
constexpr Long kUsualFirstFat32Count = 65525;

std::string TypeText(Long bits) { return "FAT" + std::to_string(bits); }

Long UsualType(Long dataClusters) {
    if (dataClusters < kUsualFirstFat16Count) return 12;
    return dataClusters < kUsualFirstFat32Count ? 16 : 32;
}

/// The range of cluster counts that FatType stands for.
std::string Bounds() {
    if (FatType == 12) return "fewer than " + Grouped(kFirstFat16Count);
    if (FatType == 32) return Grouped(kFirstFat32Count) + " or more";
    return Grouped(kFirstFat16Count) + " to " + Grouped(kFirstFat32Count - 1);
}

/// The type that the boot sector's text names; "" for none.
std::string TextInBootSector() {
    const std::string text = Trimmed(BootSector.SystemId);
    return text.find_first_not_of('.') == text.npos ? "" : text;
}

/// The cluster count that decided, and how it was determined.
std::string CountText() {
    const std::string count = Grouped(Drives[1].ClusterCount);
    if (BootSector.SectorsPerCluster != 0) return count + " clusters counted over all sectors.";
    return "the boot sector gives no sectors per cluster, so the previous count of " + count +
           " clusters is kept.";
}

}  // namespace

std::string FatTypeReason() {
    const std::string type = TypeText(FatType);
    const std::string named = TextInBootSector();
    const bool isNamed = UpperCase(named) == type;
    const Long dataClusters = Drives[1].DataClusterCount;
    const Long usual = dataClusters == 0 ? FatType : UsualType(dataClusters);
    const bool isFat32Layout = BootSector.BytesPerSector != 0 &&
                               BootSector.SectorsPerCluster != 0 && BootSector.SectorsPerFat == 0;
    if (!isFat32Layout && isNamed && usual == FatType && BootSector.SectorsPerCluster != 0) {
        return type + ": " + Grouped(Drives[1].ClusterCount) + " clusters (" + Bounds() + ")";
    }

    const std::string reason = "Read as " + type + ": " + CountText() + " The boot sector " +
                               (named.empty() ? "names no type" : "says " + named);
    const std::string end = FatType == 32 ? "." : ": files may come out wrong.";
    if (isFat32Layout) return reason + ", and gives no size of a FAT in 16 bits, as on FAT32" + end;
    if (dataClusters == 0) return reason + ".";
    const bool agree = named.empty() || UpperCase(named) == TypeText(usual);
    const std::string others = (agree ? ", and" : ", but") + std::string(" by its data area (") +
                               Grouped(dataClusters) + " clusters) other systems read it as " +
                               TypeText(usual);
    if (usual == FatType) return reason + others + ", too.";
    return reason + others + end;
}

}  // namespace tessel
