#include "volume/volumeState.h"

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

Long ClusterBytes() { return BootSector.SectorsPerCluster * kSectorBytes; }

}  // namespace tessel
