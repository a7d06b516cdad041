#include "drive/resetVolume.h"

#include "platform/numberedFiles.h"
#include "volume/modDisks.h"

namespace tessel {

void ResetVolume() {
    for (int number = 1; number <= 255; ++number) AbandonFile(number);
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

}  // namespace tessel
