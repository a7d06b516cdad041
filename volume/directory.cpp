#include "volume/directory.h"

#include <algorithm>
#include <array>
#include <span>

#include "platform/numberedFiles.h"
#include "util/modUtility.h"
#include "volume/clusterChain.h"
#include "volume/fatEntries.h"
#include "volume/imageReads.h"
#include "volume/onDisk.h"
#include "volume/volumeState.h"

namespace tessel {

DirEntryTable DirEntries;
Long DirEntryCount = 0;

namespace {

/// Entries of one read: 64 sectors' worth.
constexpr Long kEntriesPerRead = 64 * entry::kPerSector;

std::u16string_view LongNamePart(ByteBuffer bytes) {
    std::array<char16_t, std::size(entry::kLongNameUnits)> part;
    std::size_t count = 0;
    for (const Integer offset : entry::kLongNameUnits) {
        const Long unit = GetWord(bytes, offset);
        if (unit != 0 && unit != 0xFFFF) part[count++] = static_cast<char16_t>(unit);
    }
    return DirEntries.Keep({part.data(), count});
}

/// Adds a row for the 32 bytes of an entry; returns its InUse, false also when the table is full.
bool AddRow(ByteBuffer bytes) {
    const Long row = DirEntryCount;
    if (!DirEntries.Grow(row)) return false;
    const auto byte = [bytes](Integer at) { return static_cast<Byte>(GetByte(bytes, at)); };
    const auto word = [bytes](Integer at) { return static_cast<Word>(GetWord(bytes, at)); };
    DirEntry& e = DirEntries(row);
    e = {
        .Name = {GetString(bytes, entry::kName, 8)},
        .Ext = {GetString(bytes, entry::kExt, 3)},
        .InUse = bytes[0] != entry::kEnd,
        .Deleted = bytes[0] == entry::kDeleted,
        .Attributes = word(entry::kAttributes),
        .Reserved = byte(entry::kReserved),
        .CreateTenths = byte(entry::kCreateTenths),
        .CreateTime = word(entry::kCreateTime),
        .CreateDate = word(entry::kCreateDate),
        .AccessDate = word(entry::kAccessDate),
        .ClusterHigh = word(entry::kClusterHigh),
        .ModifyTime = word(entry::kModifyTime),
        .ModifyDate = word(entry::kModifyDate),
        .StartCluster = word(entry::kStartCluster),
        .FileSize = GetLong(bytes, entry::kFileSize),
    };
    if (IsLongName(row)) {
        e.LfnSequence = bytes[0];
        e.LongName = LongNamePart(bytes);
    }
    ++DirEntryCount;
    return e.InUse;
}

/// Where entry `index` of a directory's cluster (0: the root) lies in the image.
std::int64_t EntryOffset(Long cluster, Long index) {
    const std::int64_t inArea = std::int64_t{index} * entry::kBytes;
    if (cluster != 0) return ClusterOffset(cluster, inArea);
    return std::int64_t{PartitionOffset} + SectorToAddress(Drives[1].RootDirSector) + inArea;
}

/// Adds `count` entries that lie together, many a read, up to and with the first whose InUse is
/// false. Where a read fails, the entries in front of that place are added before it raises.
void AddEntries(Long cluster, Long count) {
    std::vector<Byte> bytes;
    for (Long index = 0; index < count; index += kEntriesPerRead) {
        const Long wanted = std::min(kEntriesPerRead, count - index);
        bytes.resize(static_cast<std::size_t>(wanted) * entry::kBytes);
        const std::size_t good =
            ReadFileUpTo(kImageFile, EntryOffset(cluster, index), bytes) / entry::kBytes;
        for (std::size_t i = 0; i < good; ++i) {
            if (!AddRow(ByteBuffer(bytes).subspan(i * entry::kBytes, entry::kBytes))) return;
        }
        if (good < static_cast<std::size_t>(wanted)) {
            const auto failing = static_cast<Long>(index + static_cast<Long>(good));
            ReadFile(kImageFile, EntryOffset(cluster, failing), std::span(bytes).first(1));
            Raise(kDeviceIoError);  // it failed before, and now it does not
        }
    }
}

}  // namespace

DirEntryTable::DirEntryTable() {
    // Room that is not used takes no memory, and rows that never move take no time.
    Table.reserve(kMostRows);
    Clear();
}

void DirEntryTable::Clear() {
    Table.clear();
    Table.resize(kFewestRows);
    LongNames.release();
}

std::u16string_view DirEntryTable::Keep(std::u16string_view name) {
    if (name.empty()) return {};
    auto* const kept = static_cast<char16_t*>(
        LongNames.allocate(name.size() * sizeof(char16_t), alignof(char16_t)));
    std::copy(name.begin(), name.end(), kept);
    return {kept, name.size()};
}

bool DirEntryTable::Grow(Long row) {
    if (row >= kMostRows) return false;
    if (row >= Rows())
        Table.resize(static_cast<std::size_t>(std::min(Rows() + kFewestRows, kMostRows)));
    return true;
}

bool IsDeleted(Long row) { return DirEntries(row).Deleted; }

bool IsVolumeLabel(Long row) { return DirEntries(row).Attributes == attribute::kVolumeLabel; }

bool IsDirectory(Long row) { return (DirEntries(row).Attributes & attribute::kDirectory) != 0; }

bool IsLongName(Long row) {
    return (DirEntries(row).Attributes & attribute::kLongName) == attribute::kLongName;
}

bool IsFile(Long row) { return !IsVolumeLabel(row) && !IsDirectory(row) && !IsLongName(row); }

void ClearDirEntries() {
    DirEntries.Clear();
    DirEntryCount = 0;
}

void LoadRootDirectory() {
    if (DirEntries.Grow(DirEntryCount)) {
        DirEntries(DirEntryCount) = {
            .Name = {".       "}, .InUse = true, .Attributes = attribute::kDirectory};
    }
    ++DirEntryCount;
    AddEntries(0, BootSector.RootEntries);
}

void LoadSubDirectory(Long cluster) {
    const ClusterChain chain(cluster);
    const Long most = std::max<Long>(1, Drives[1].ClusterCount);
    const Long perCluster = BootSector.SectorsPerCluster * entry::kPerSector;
    if (perCluster == 0) return;
    for (Long n = 0; n < most && DirEntryCount < DirEntryTable::kMostRows; ++n) {
        const std::int64_t at = n * chain.BytesPerCluster();
        if (!chain.LoopTarget() && at >= chain.DistinctBytes()) break;
        const Long visited = chain.ExtentAt(at).Cluster;
        try {
            AddEntries(visited, perCluster);
        } catch (const RuntimeError& error) {
            // An end mark such as FFF8 is visited like a cluster, and may lie past every address.
            if (error.Number != kOverflow || n == 0 || visited < Drives[1].ClusterCount) throw;
        }
    }
}

bool ReadDirEntry(Long cluster, Long index) {
    std::array<Byte, entry::kBytes> bytes{};
    ReadFile(kImageFile, EntryOffset(cluster, index), bytes);
    return AddRow(bytes);
}

void AttachLongNames() {
    // The parts of the name so far, in the order in which they stand on the disk: last part first.
    std::vector<Long> parts;
    std::u16string name;
    for (Long row = 0; row < DirEntries.Rows() && DirEntries(row).InUse; ++row) {
        DirEntry& e = DirEntries(row);
        if (e.Deleted) continue;
        if (IsLongName(row)) {
            if ((e.LfnSequence & entry::kLastPart) != 0) parts.clear();
            parts.push_back(row);
        }
        if (IsFile(row) || IsDirectory(row)) {
            name.clear();
            for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
                name += DirEntries(*part).LongName;
            }
            e.LongName = DirEntries.Keep(name);
            parts.clear();
        }
    }
}

Long CountFiles() {
    Long files = 0;
    for (Long row = 0; row < DirEntries.Rows() && DirEntries(row).InUse; ++row) {
        if (IsFile(row) && !IsDeleted(row)) ++files;
    }
    return files;
}

std::string EntryFileName(Long row) {
    const std::string name = Trimmed(DirEntries(row).Name);
    const std::string ext = Trimmed(DirEntries(row).Ext);
    return ext.empty() ? name : name + "." + ext;
}

std::string LongNameText(Long row) { return Utf8(DirEntries(row).LongName); }

}  // namespace tessel
