#include "reports/offsetLines.h"

#include <algorithm>
#include <array>

#include "platform/numberedFiles.h"
#include "util/modUtility.h"
#include "volume/onDisk.h"

namespace tessel {
namespace {

/// The largest numbers that the offset box accepts.
constexpr std::int64_t kMaxDecimal = 536870919;
constexpr std::int64_t kMaxHexadecimal = 0x3333333F;

constexpr const char* kBetweenParts = "   ";

struct TypeName {
    Byte Type;
    const char* Name;
};

/// The types in a master boot record. A hidden one is 10h above the visible one.
constexpr auto kTypeNames = std::to_array<TypeName>({
    {0x01, "FAT12"},      {0x04, "FAT16"},      {0x05, "extended"}, {0x06, "FAT16"},
    {0x07, "NTFS"},       {0x0B, "FAT32"},      {0x0C, "FAT32"},    {0x0E, "FAT16"},
    {0x0F, "extended"},   {0x11, "FAT12"},      {0x14, "FAT16"},    {0x16, "FAT16"},
    {0x17, "NTFS"},       {0x1B, "FAT32"},      {0x1C, "FAT32"},    {0x1E, "FAT16"},
    {0x82, "Linux swap"}, {0x83, "Linux"},      {0x85, "extended"}, {0x8E, "Linux LVM"},
    {0xA5, "BSD"},        {0xA6, "BSD"},        {0xA9, "BSD"},      {0xAF, "HFS+"},
    {0xEE, "GPT"},        {0xEF, "EFI system"},
});

std::string TypeText(Byte type) {
    const auto row = std::find_if(kTypeNames.begin(), kTypeNames.end(),
                                  [type](const TypeName& name) { return name.Type == type; });
    if (row != kTypeNames.end()) return row->Name;
    return type == 0 ? "" : "type " + Hex2(type);
}

bool IsFat(const TableVolume& volume) {
    return volume.Kind == VolumeKind::kFat12 || volume.Kind == VolumeKind::kFat16;
}

/// Whether its type allows a FAT volume.
bool MayBeFat(const TableVolume& volume) {
    const std::string type = TypeText(volume.Type);
    return type.empty() || type.starts_with("FAT") || type.starts_with("EFI");
}

std::string FatText(const TableVolume& volume) {
    std::string fat = volume.Kind == VolumeKind::kFat12 ? "FAT12" : "FAT16";
    if (volume.BytesPerSector == kSectorBytes) return fat;
    return fat + " with sectors of " + Grouped(volume.BytesPerSector) + " bytes";
}

std::string KindText(const TableVolume& volume) {
    const std::string type = TypeText(volume.Type);
    const std::string typed = type.empty() ? "" : type + ", ";
    switch (volume.Kind) {
        case VolumeKind::kFat12:
        case VolumeKind::kFat16:
            return FatText(volume);
        case VolumeKind::kFat32:
            return "FAT32, not supported";
        case VolumeKind::kExFat:
            return "exFAT, not supported";
        case VolumeKind::kNtfs:
            return "NTFS, not supported";
        case VolumeKind::kOutside:
            return typed + "outside the file";
        case VolumeKind::kUnreadable:
            return typed + "cannot be read";
        case VolumeKind::kBeyondRead:
            return typed + "past the first 2 GB";
        case VolumeKind::kNoVolume:
            break;
    }
    if (IsExtendedType(volume.Type)) return typed + "no table";
    return typed + (MayBeFat(volume) ? "no FAT boot sector" : "not supported");
}

/// A file name as a word of a shell's command line.
std::string ShellWord(const std::string& name) {
    const auto isPlain = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
               c == '.' || c == '_';
    };
    if (!name.empty() && std::all_of(name.begin(), name.end(), isPlain)) return name;
    std::string word = name.starts_with('-') ? "./'" : "'";
    for (const char c : name) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + "'";
}

std::string CutCommand(const TableVolume& volume, const std::string& imageTitle) {
    return "dd if=" + ShellWord(imageTitle) +
           " of=part.img bs=512 skip=" + std::to_string(volume.Offset / kSectorBytes) +
           " count=" + std::to_string(volume.Size / kSectorBytes);
}

/// Why the offset of a volume cannot be entered as it is, and what to do; "" if it can.
std::string Remark(const TableVolume& volume, const std::string& imageTitle) {
    if (volume.Kind == VolumeKind::kBeyondRead) {
        // The first sector of an extended partition is a table, and lists its volume in the copy.
        const bool useful = MayBeFat(volume) || IsExtendedType(volume.Type);
        return useful ? CutCommand(volume, imageTitle) : "";
    }
    if (!IsFat(volume)) return "";
    const std::string past = "past " + std::to_string(kMaxDecimal);
    if (volume.Offset > kMaxHexadecimal) return past + ": " + CutCommand(volume, imageTitle);
    if (volume.Offset > kMaxDecimal) {
        return past + ": enter it in hexadecimal, or " + CutCommand(volume, imageTitle);
    }
    return "";
}

std::string ReachText(const TableVolume& volume, std::int64_t fileBytes) {
    if (!IsFat(volume)) return "";
    const std::int64_t end = volume.Offset + volume.Size;
    if (end > fileBytes) return "ends outside the file";
    return end > kLastFileOffset + 2 ? "ends past the first 2 GB" : "";
}

/// The line for one volume.
InputChoice VolumeLine(const TableVolume& volume, std::int64_t fileBytes,
                       const std::string& imageTitle) {
    InputChoice line{.Enabled = IsFat(volume) && volume.Offset <= kMaxHexadecimal};
    if (line.Enabled) {
        line.Value = volume.Offset <= kMaxDecimal ? std::to_string(volume.Offset)
                                                  : "&H" + Hex8(static_cast<Long>(volume.Offset));
    }
    line.Text = std::to_string(volume.Offset);
    const std::string name = volume.Name.empty() ? "" : '"' + volume.Name + '"';
    for (const std::string& part : {KindText(volume), SizeText(volume.Size), volume.Label, name,
                                    ReachText(volume, fileBytes), Remark(volume, imageTitle)}) {
        if (!part.empty()) line.Text += kBetweenParts + part;
    }
    return line;
}

}  // namespace

std::vector<InputChoice> OffsetLines(const PartitionTable& table, const std::string& imageTitle) {
    std::vector<InputChoice> lines{{.Value = "0", .Text = "0   whole file"}};
    for (const TableVolume& volume : table.Volumes) {
        lines.push_back(VolumeLine(volume, table.FileBytes, imageTitle));
    }
    std::stable_partition(lines.begin(), lines.end(),
                          [](const InputChoice& line) { return line.Enabled; });
    return lines;
}

}  // namespace tessel
