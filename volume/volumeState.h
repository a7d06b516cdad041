#pragma once

#include <array>
#include <string>

#include "platform/pageBytes.h"
#include "platform/runtimeError.h"
#include "util/byteFields.h"
#include "volume/modGlobals.h"

/// The program-wide state of the open image. Only the Open and Close commands write it; Open
/// overwrites it field by field.
namespace tessel {

/// One image and its volume. Sector numbers count from the start of the volume.
struct DriveRecord {
    std::string ImagePath{};        ///< full path of the open image
    std::string ImageTitle{};       ///< its name without the folder
    Integer FileNumber = 0;         ///< number under which it is open; always 1
    bool IsOpen = false;            ///< open, and its volume accepted
    Long SectorsPerTrack = 0;       ///< from the image's length, then from the boot sector
    Long Tracks = 0;                ///< from the image's length
    Integer Heads = 0;              ///< from the image's length, then from the boot sector
    Integer SectorSize = 0;         ///< 512, then the boot sector's bytes per sector
    Integer LogicalSectorSize = 0;  ///< the same value
    Long ClusterCount = 0;          ///< TotalSectors / SectorsPerCluster: decides the FAT type
    Long DataClusterCount = 0;      ///< the clusters of the data area alone, as most systems count
    Long TotalSectors = 0;
    Long Fat0Sector = 0;
    Long Fat1Sector = 0;
    Long RootDirSector = 0;
    Long DataSector = 0;  ///< the first sector of cluster 2
};

/// The fields of the boot sector.
struct BootSectorRecord {
    std::string OemId{};
    Long BootSignature = 0;
    Long BytesPerSector = 0;
    Long SectorsPerCluster = 0;
    Long ReservedSectors = 0;
    Long NumberOfFats = 0;
    Long RootEntries = 0;
    Long SmallSectors = 0;
    Long MediaType = 0;
    Long SectorsPerFat = 0;
    Long SectorsPerTrack = 0;
    Long NumberOfHeads = 0;
    Long HiddenSectors = 0;
    Long LargeSectors = 0;
    Long PhysicalDiskNumber = 0;
    Long CurrentHead = 0;
    Long Signature = 0;
    Long VolSerialNumber = 0;
    std::string VolumeLabel{};
    std::string SystemId{};
};

/// The sector addressed last. Reads use only ByteOffset.
struct DiskAddressRecord {
    Byte Track = 0;
    Byte Head = 0;
    Byte Sector = 0;
    Integer SectorCount = 0;
    Long ByteOffset = 0;  ///< from the start of the volume
};

/// The drive slots 0 to 3. Slot 1 is the open image; the others are unused.
extern std::array<DriveRecord, 4> Drives;
extern BootSectorRecord BootSector;
extern DiskAddressRecord DiskAddress;

extern std::array<Byte, 512> SectorBuffer;     ///< target of single-sector reads
extern std::array<Byte, 512> BootSectorBytes;  ///< sector 0 of the volume
extern PageBytes Fat0Bytes;                    ///< the first FAT, as far as the image holds it
extern PageBytes Fat1Bytes;                    ///< the second FAT, likewise
extern PageBytes RootDirBytes;                 ///< the whole root directory

extern Long PartitionOffset;  ///< offset of the volume in the image file, bytes
extern Long FatType;          ///< 0 before the first image, then 12, 16 or 32
extern Long FatEndMark;       ///< the FAT entry that ends a chain

/// The file number of the image.
inline constexpr int kImageFile = 1;
/// The file number of a host file being written.
inline constexpr int kTargetFile = 20;

/// Bytes of one cluster: SectorsPerCluster sectors of 512 bytes.
Long ClusterBytes();

}  // namespace tessel
