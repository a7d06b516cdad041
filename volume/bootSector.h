#pragma once

#include "platform/controls.h"
#include "platform/runtimeError.h"
#include "util/byteFields.h"
#include "volume/volumeState.h"

/// Mounting a volume: geometry, boot sector, layout, FAT type.
namespace tessel {

/// The smallest cluster counts of a FAT16 and of a FAT32 volume.
inline constexpr Long kFirstFat16Count = 4080;
inline constexpr Long kFirstFat32Count = 65520;

/// Sets tracks, heads, sectors per track and both sector sizes of Drives[slot] from the length of
/// the file that is open under the slot's file number. Raises 9 for a slot other than 0 to 3, 52
/// when the file is not open.
void SetDriveGeometry(Integer slot);

/// Reads sector 0 of the volume into BootSectorBytes. Returns false, and leaves it unchanged, when
/// the read fails.
bool ReadBootSector();

/// The fields of a boot sector, which is 512 bytes long; raises 9 for a shorter one.
BootSectorRecord BootSectorFields(ByteBuffer sector);
/// The sectors of the volume: the small count, or the large one where that is 0.
Long SectorCount(const BootSectorRecord& fields);
/// The clusters of the data area, by which most systems decide the FAT type; 0 if the fields are
/// invalid or have no size of a FAT, as on FAT32.
Long DataClusterCount(const BootSectorRecord& fields);

/// Fills BootSector from BootSectorBytes and computes the layout of Drives[1]. A layout field that
/// cannot be computed (division by zero, value too large) keeps its previous value.
void ParseBootSector();

/// Whether BootSectorBytes has the bytes 55 AA at offset 510.
bool HasBootSignature();

/// The FAT type of a volume with `clusterCount` clusters: 12, 16 or 32.
Long FatTypeOf(Long clusterCount);

/// Sets FatType to `bits` (12, 16 or 32; any other value does nothing) and FatEndMark to the type's
/// end mark. Makes the system identifier label black when the boot sector names the same type;
/// otherwise makes it blue and sets it to "Fat12", "Fat16" or "Fat32".
void SetFatType(Long bits, Label& systemId);

}  // namespace tessel
