#include "drive/resetVolume.h"

#include "platform/numberedFiles.h"
#include "volume/modDisks.h"

namespace tessel {

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

}  // namespace tessel
