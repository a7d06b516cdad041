#include <array>

#include "reports/dumps.h"
#include "util/modUtility.h"
#include "volume/onDisk.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

/// "  CAPTION", padded with blanks to 22 characters, and "= ".
std::string Caption(const std::string& caption) {
    std::string text = "  " + caption;
    text.resize(22, ' ');
    return text + "= ";
}

std::string Number(const std::string& caption, const std::string& hexadecimal, Long value) {
    return Caption(caption) + hexadecimal + " (" + std::to_string(value) + ")\r\n";
}

std::string Number2(const std::string& caption, Long value) {
    return Number(caption, Hex2(value), value);
}
std::string Number4(const std::string& caption, Long value) {
    return Number(caption, Hex4(value), value);
}
std::string Number8(const std::string& caption, Long value) {
    return Number(caption, Hex8(value), value);
}

/// A line with a text field and its bytes in hexadecimal.
std::string Text(const std::string& caption, const std::string& text, Integer offset,
                 Integer length) {
    std::string line = Caption(caption) + text;
    line += std::string(static_cast<std::size_t>(12 - length), ' ') + "( ";
    for (Integer i = 0; i < length; ++i) {
        line += Hex2(GetByte(BootSectorBytes, static_cast<Integer>(offset + i))) + " ";
    }
    return line + ")\r\n";
}

}  // namespace

std::string BootSectorInfo() {
    const BootSectorRecord& b = BootSector;
    return " Boot Sector Info\r\n\r\n" + Text("OEM ID", b.OemId, boot::kOemId, boot::kOemIdLength) +
           Number4("Bytes per Sector", b.BytesPerSector) +
           Number2("Sectors per Cluster", b.SectorsPerCluster) +
           Number4("Reserved Sectors", b.ReservedSectors) +
           Number2("Number of FATS", b.NumberOfFats) +  //
           Number4("Root Entries", b.RootEntries) + Number4("Small Sectors", b.SmallSectors) +
           Number2("Media Type", b.MediaType) + Number4("Sectors per FAT", b.SectorsPerFat) +
           Number4("Sectors per Track", b.SectorsPerTrack) +
           Number4("Number of Heads", b.NumberOfHeads) +
           Number8("Hidden Sectors", b.HiddenSectors) + Number8("Large Sectors", b.LargeSectors) +
           Number2("Phsical Disk Number", b.PhysicalDiskNumber) +
           Number2("Scan / Surface (CH)", b.CurrentHead) + Number2("Signature", b.Signature) +
           Number8("Vol Serial Number", b.VolSerialNumber) +
           Text("Volume Label", b.VolumeLabel, boot::kVolumeLabel, boot::kVolumeLabelLength) +
           Text("System ID", b.SystemId, boot::kSystemId, boot::kSystemIdLength) +
           Caption("Signature") + Hex4(b.BootSignature) + "\r\n\r\n";
}

}  // namespace tessel
