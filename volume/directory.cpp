#include "volume/directory.h"

#include <algorithm>
#include <array>
#include <span>
#include <type_traits>

#include "platform/numberedFiles.h"
#include "platform/pageBytes.h"
#include "util/modUtility.h"
#include "volume/clusterChain.h"
#include "volume/fatEntries.h"
#include "volume/imageReads.h"
#include "volume/onDisk.h"
#include "volume/volumeState.h"

namespace tessel {

static_assert(!std::is_copy_constructible_v<DirEntry>, "a copied row could outlive its name");

DirEntryTable DirEntries;
Long DirEntryCount = 0;

namespace {

/// Entries per read: those of 64 sectors.
constexpr Long kEntriesPerRead = 64 * entry::kPerSector;

KeptText LongNamePart(ByteBuffer bytes) {
    std::array<char16_t, std::size(entry::kLongNameUnits)> part;
    std::size_t count = 0;
    for (const Integer offset : entry::kLongNameUnits) {
        const Long unit = GetWord(bytes, offset);
        if (unit != 0 && unit != 0xFFFF) part[count++] = static_cast<char16_t>(unit);
    }
    return DirEntries.Keep({part.data(), count});
}

bool HasLongNameAttributes(const DirEntry& e) {
    return (e.Attributes & attribute::kLongName) == attribute::kLongName;
}

/// Decodes the 32 bytes of an entry.
DirEntry Decode(ByteBuffer bytes) {
    const auto byte = [bytes](Integer at) { return static_cast<Byte>(GetByte(bytes, at)); };
    const auto word = [bytes](Integer at) { return static_cast<Word>(GetWord(bytes, at)); };
    DirEntry e = {
        .Name = {GetString(bytes, entry::kName, 8)},
        .Ext = {GetString(bytes, entry::kExt, 3)},
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
        .InUse = bytes[0] != entry::kEnd,
        .Deleted = bytes[0] == entry::kDeleted,
    };
    if (HasLongNameAttributes(e)) {
        e.LfnSequence = bytes[0];
        e.LongName = LongNamePart(bytes);
    }
    return e;
}

/// Adds a row; returns false when the table is full.
bool AddRow(DirEntry e) {
    if (!DirEntries.Grow(DirEntryCount)) return false;
    DirEntries(DirEntryCount) = std::move(e);
    ++DirEntryCount;
    return true;
}

/// The offset in the image file of entry `index` of a directory cluster (0 for the root directory).
std::int64_t EntryOffset(Long cluster, Long index) {
    const std::int64_t inArea = std::int64_t{index} * entry::kBytes;
    if (cluster != 0) return ClusterOffset(cluster, inArea);
    return std::int64_t{PartitionOffset} + SectorToAddress(Drives[1].RootDirSector) + inArea;
}

/// Consecutive entries of a directory cluster (0 for the root directory), read ahead.
class EntryBlock {
  public:
    /// Returns the bytes of an entry, valid until the next call. Raises 6 or 57 when it cannot be
    /// read.
    ByteBuffer Entry(Long cluster, Long index) {
        if (!Contains(cluster, index)) Read(cluster, index);
        if (!Contains(cluster, index)) RaiseReadError(EntryOffset(cluster, index));
        return ByteBuffer(Bytes).subspan(static_cast<std::size_t>(index - First) * entry::kBytes,
                                         entry::kBytes);
    }

  private:
    bool Contains(Long cluster, Long index) const {
        const Long held = static_cast<Long>(Bytes.size() / entry::kBytes);
        return cluster == Cluster && index >= First && index - First < held;
    }
    void Read(Long cluster, Long index) {
        const Long inCluster =
            cluster == 0 ? BootSector.RootEntries : ClusterBytes() / entry::kBytes;
        const std::int64_t offset = EntryOffset(cluster, index);
        Bytes.resize(static_cast<std::size_t>(std::clamp(inCluster - index, 1, kEntriesPerRead)) *
                     entry::kBytes);
        Bytes.resize(ReadFileUpTo(kImageFile, offset, Bytes));
        Cluster = cluster;
        First = index;
    }

    Long Cluster = 0;
    Long First = 0;  // index of the first entry
    PageBytes Bytes{};
};

EntryBlock ReadAhead;

}  // namespace

DirEntryTable::DirEntryTable() {
    // Reserved memory that is not touched costs nothing, and rows are never moved.
    Table.reserve(kMaxRows);
    Clear();
}

void DirEntryTable::Clear() {
    Table.clear();
    Table.resize(kMinRows);
    LongNames.release();
}

KeptText DirEntryTable::Keep(std::u16string_view text) {
    if (text.empty()) return {};
    auto* const kept = static_cast<char16_t*>(
        LongNames.allocate(text.size() * sizeof(char16_t), alignof(char16_t)));
    std::copy(text.begin(), text.end(), kept);
    return KeptText({kept, text.size()});
}

bool DirEntryTable::Grow(Long row) {
    if (row >= kMaxRows) return false;
    if (row >= Rows())
        Table.resize(static_cast<std::size_t>(std::min(Rows() + kMinRows, kMaxRows)));
    return true;
}

bool IsDeleted(Long row) { return DirEntries(row).Deleted; }

bool IsVolumeLabel(Long row) { return DirEntries(row).Attributes == attribute::kVolumeLabel; }

bool IsDirectory(Long row) { return (DirEntries(row).Attributes & attribute::kDirectory) != 0; }

bool IsLongName(Long row) { return HasLongNameAttributes(DirEntries(row)); }

bool IsFile(Long row) { return !IsVolumeLabel(row) && !IsDirectory(row) && !IsLongName(row); }

void ClearDirEntries() {
    DirEntries.Clear();
    DirEntryCount = 0;
    ReadAhead = {};
}

void LoadRootDirectory() {
    AddRow({.Name = {".       "}, .Attributes = attribute::kDirectory, .InUse = true});
    for (Long index = 0; index < BootSector.RootEntries; ++index) {
        if (!ReadDirEntry(0, index)) break;
    }
}

void LoadSubDirectory(Long cluster) {
    const ClusterChain chain(cluster);
    const Long maxClusters = std::max<Long>(1, Drives[1].ClusterCount);
    const Long perCluster = ClusterBytes() / entry::kBytes;
    if (perCluster == 0) return;
    for (Long n = 0; n < maxClusters && DirEntryCount < DirEntryTable::kMaxRows; ++n) {
        const std::int64_t at = n * chain.BytesPerCluster();
        if (!chain.LoopTarget() && at >= chain.DistinctBytes()) break;
        const Long visited = chain.ExtentAt(at).Cluster;
        try {
            for (Long index = 0; index < perCluster; ++index) {
                if (!ReadDirEntry(visited, index)) break;
            }
        } catch (const RuntimeError& error) {
            // The last cluster may be an end mark such as FFF8, whose address overflows.
            if (error.Number != kOverflow || n == 0 || visited < Drives[1].ClusterCount) throw;
        }
    }
}

bool ReadDirEntry(Long cluster, Long index) {
    return AddRow(Decode(ReadAhead.Entry(cluster, index))) && DirEntries(DirEntryCount - 1).InUse;
}

void AttachLongNames() {
    // The rows of the parts found so far, in disk order: the last part of the name comes first.
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
