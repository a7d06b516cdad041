#include "volume/volumeState.h"

#include "platform/numberedFiles.h"
#include "volume/directory.h"
#include "volume/onDisk.h"

namespace tessel {

bool Busy = false;
bool StopRequested = false;

std::array<DriveRecord, 4> Drives;
BootSectorRecord BootSector;
DiskAddressRecord DiskAddress;

std::array<Byte, 512> SectorBuffer{};
std::array<Byte, 512> BootSectorBytes{};
PageBytes Fat0Bytes;
PageBytes Fat1Bytes;
PageBytes RootDirBytes;

Long PartitionOffset = 0;
Long FatType = 0;
Long FatEndMark = 0;

void ResetVolume() {
    CloseAllFiles();
    Busy = StopRequested = false;
    Drives = {};
    BootSector = {};
    DiskAddress = {};
    SectorBuffer = {};
    BootSectorBytes = {};
    Fat0Bytes.clear();
    Fat1Bytes.clear();
    RootDirBytes.clear();
    PartitionOffset = FatType = FatEndMark = 0;
    ClearDirEntries();
}

Long ClusterBytes() { return BootSector.SectorsPerCluster * kSectorBytes; }

}  // namespace tessel
