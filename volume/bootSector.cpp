#include "volume/bootSector.h"

#include <array>

#include "platform/numberedFiles.h"
#include "util/modUtility.h"
#include "volume/imageReads.h"
#include "volume/onDisk.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

struct Geometry {
    std::int64_t Length;
    Long Tracks;
    Integer Heads;
    Long SectorsPerTrack;
};

/// The floppy formats by image length; the last row applies to all other lengths.
constexpr std::array kGeometries = {
    Geometry{0, 80, 2, 36},       Geometry{163840, 40, 1, 8},   Geometry{184320, 40, 1, 9},
    Geometry{327680, 40, 2, 8},   Geometry{368640, 40, 2, 9},   Geometry{737280, 80, 2, 9},
    Geometry{1228800, 80, 2, 15}, Geometry{1474560, 80, 2, 18}, Geometry{1720320, 80, 2, 21},
    Geometry{-1, 80, 2, 18},
};

const Geometry& GeometryOf(std::int64_t length) {
    for (const Geometry& row : kGeometries) {
        if (row.Length == length) return row;
    }
    return kGeometries.back();
}

Long Quotient(Long dividend, Long divisor) {
    if (divisor == 0) Raise(kDivisionByZero);
    return CheckedLong(std::int64_t{dividend} / divisor);
}

Integer CheckedInteger(Long value) {
    if (value < INT16_MIN || value > INT16_MAX) Raise(kOverflow);
    return static_cast<Integer>(value);
}

/// Sets a layout field, or leaves it unchanged when computing its value raises an error.
template <class Field, class Value>
void Derive(Field& field, const Value& value) {
    try {
        field = value();
    } catch (const RuntimeError&) {
        return;
    }
}

}  // namespace

BootSectorRecord BootSectorFields(ByteBuffer bytes) {
    BootSectorRecord fields{
        .OemId = GetString(bytes, boot::kOemId, boot::kOemIdLength),
        .BytesPerSector = GetWord(bytes, boot::kBytesPerSector),
        .SectorsPerCluster = GetByte(bytes, boot::kSectorsPerCluster),
        .ReservedSectors = GetWord(bytes, boot::kReservedSectors),
        .NumberOfFats = GetByte(bytes, boot::kNumberOfFats),
        .RootEntries = GetWord(bytes, boot::kRootEntries),
        .SmallSectors = GetWord(bytes, boot::kSmallSectors),
        .MediaType = GetByte(bytes, boot::kMediaType),
        .SectorsPerFat = GetWord(bytes, boot::kSectorsPerFat),
        .SectorsPerTrack = GetWord(bytes, boot::kSectorsPerTrack),
        .NumberOfHeads = GetWord(bytes, boot::kNumberOfHeads),
        .HiddenSectors = GetLong(bytes, boot::kHiddenSectors),
        .LargeSectors = GetLong(bytes, boot::kLargeSectors),
        .PhysicalDiskNumber = GetByte(bytes, boot::kPhysicalDiskNumber),
        .CurrentHead = GetByte(bytes, boot::kCurrentHead),
        .Signature = GetByte(bytes, boot::kSignature),
        .VolSerialNumber = GetLong(bytes, boot::kVolSerialNumber),
        .VolumeLabel = GetString(bytes, boot::kVolumeLabel, boot::kVolumeLabelLength),
        .SystemId = GetString(bytes, boot::kSystemId, boot::kSystemIdLength),
    };
    fields.BootSignature = GetWord(bytes, boot::kBootSignature);
    return fields;
}

Long SectorCount(const BootSectorRecord& fields) {
    return fields.SmallSectors != 0 ? fields.SmallSectors : fields.LargeSectors;
}

Long DataClusterCount(const BootSectorRecord& fields) {
    if (fields.BytesPerSector == 0 || fields.SectorsPerCluster == 0 || fields.SectorsPerFat == 0) {
        return 0;
    }
    // A partial sector at the end of the root directory counts as a whole one here.
    const Long rootSectors =
        (fields.RootEntries * entry::kBytes + fields.BytesPerSector - 1) / fields.BytesPerSector;
    const Long overhead =
        fields.ReservedSectors + fields.NumberOfFats * fields.SectorsPerFat + rootSectors;
    const Long sectors = SectorCount(fields);
    return sectors > overhead ? (sectors - overhead) / fields.SectorsPerCluster : 0;
}

void SetDriveGeometry(Integer slot) {
    if (slot < 0 || slot >= static_cast<Integer>(Drives.size())) Raise(kSubscriptOutOfRange);
    DriveRecord& drive = Drives[static_cast<std::size_t>(slot)];
    const Geometry& geometry = GeometryOf(FileLength(drive.FileNumber));
    drive.Tracks = geometry.Tracks;
    drive.Heads = geometry.Heads;
    drive.SectorsPerTrack = geometry.SectorsPerTrack;
    drive.SectorSize = drive.LogicalSectorSize = kSectorBytes;
}

bool ReadBootSector() {
    if (!ReadSector(0)) return false;
    BootSectorBytes = SectorBuffer;
    return true;
}

void ParseBootSector() {
    BootSector = BootSectorFields(BootSectorBytes);
    const BootSectorRecord& b = BootSector;
    DriveRecord& drive = Drives[1];
    drive.TotalSectors = SectorCount(b);
    drive.DataClusterCount = DataClusterCount(b);

    const Long fats = b.SectorsPerFat * b.NumberOfFats;
    // Counts all sectors, including the reserved ones and the FATs; see ClusterCount.
    Derive(drive.ClusterCount, [&] { return Quotient(drive.TotalSectors, b.SectorsPerCluster); });
    drive.Fat0Sector = b.ReservedSectors;
    drive.Fat1Sector = b.ReservedSectors + b.SectorsPerFat;
    drive.RootDirSector = b.ReservedSectors + fats;
    drive.DataSector = b.ReservedSectors + fats + b.RootEntries * entry::kBytes / kSectorBytes;
    drive.SectorsPerTrack = b.SectorsPerTrack;
    Derive(drive.Heads, [&] { return CheckedInteger(b.NumberOfHeads); });
    Derive(drive.LogicalSectorSize, [&] { return CheckedInteger(b.BytesPerSector); });
    Derive(drive.SectorSize, [&] { return CheckedInteger(b.BytesPerSector); });
}

bool HasBootSignature() {
    return GetWord(BootSectorBytes, boot::kBootSignature) == boot::kBootSignatureValue;
}

Long FatTypeOf(Long clusterCount) {
    if (clusterCount < kFirstFat16Count) return 12;
    return clusterCount < kFirstFat32Count ? 16 : 32;
}

void SetFatType(Long bits, Label& systemId) {
    if (bits != 12 && bits != 16 && bits != 32) return;
    FatType = bits;
    FatEndMark = bits == 12 ? 4095 : bits == 16 ? 65535 : -1;
    const std::string number = std::to_string(bits);
    if (UpperCase(Trimmed(BootSector.SystemId)) == "FAT" + number) {
        systemId.Colour = TextColour::kBlack;
    } else {
        systemId.Colour = TextColour::kBlue;
        systemId.Caption = "Fat" + number;
    }
}

}  // namespace tessel
