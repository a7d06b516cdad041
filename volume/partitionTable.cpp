#include "volume/partitionTable.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <span>
#include <utility>

#include "platform/numberedFiles.h"
#include "util/modUtility.h"
#include "volume/bootSector.h"
#include "volume/onDisk.h"
#include "volume/tablesOnDisk.h"

namespace tessel {
namespace {

using SectorBytes = std::array<Byte, kSectorBytes>;

constexpr std::size_t kMaxLogical = 128;
constexpr std::int64_t kMaxGptBytes = std::int64_t{128} * 1024;
/// A medium may take seconds for each read that fails.
constexpr int kMaxFailures = 4;
/// The last offset at which a whole sector can be read.
constexpr std::int64_t kLastSectorOffset = kLastFileOffset + 1 - kSectorBytes;

std::int64_t Unsigned32(ByteBuffer bytes, Integer index) {
    return static_cast<std::uint32_t>(GetLong(bytes, index));
}

/// A 64-bit sector number as a byte offset; nullopt if that is beyond any file.
std::optional<std::int64_t> SectorOffset(ByteBuffer bytes, Integer index, std::int64_t perSector) {
    constexpr std::int64_t kMaxUpper = 1 << 16;
    const std::int64_t upper = Unsigned32(bytes, static_cast<Integer>(index + 4));
    if (upper > kMaxUpper) return std::nullopt;
    return ((upper << 32) + Unsigned32(bytes, index)) * perSector;
}

bool HasText(ByteBuffer bytes, Integer at, std::string_view text) {
    return GetString(bytes, at, static_cast<Integer>(text.size())) == text;
}

/// The checksum of a GPT: CRC-32 with the reflected polynomial EDB88320.
std::int64_t Checksum(ByteBuffer bytes) {
    static const auto table = [] {
        std::array<std::uint32_t, 256> values{};
        for (std::uint32_t i = 0; i < values.size(); ++i) {
            std::uint32_t value = i;
            for (int bit = 0; bit < 8; ++bit) {
                value = value >> 1 ^ (value % 2 == 1 ? 0xEDB88320U : 0U);
            }
            values[i] = value;
        }
        return values;
    }();
    std::uint32_t sum = 0xFFFFFFFF;
    for (const Byte byte : bytes) sum = sum >> 8 ^ table[(sum ^ byte) & 0xFF];
    return ~sum;
}

/// Whether a unit of UTF-16 is a control character, breaks lines, has no width or changes the
/// direction of the text around it.
bool IsControl(Long unit) {
    const auto within = [unit](Long first, Long last) { return unit >= first && unit <= last; };
    return within(0, 0x1F) || within(0x7F, 0x9F) || within(0x200B, 0x200F) ||
           within(0x2028, 0x202E) || within(0x2060, 0x206F) || unit == 0xFEFF;
}

/// A name of 16-bit units up to its first 0.
std::string NameText(ByteBuffer entry) {
    std::u16string name;
    for (Integer i = 0; i < gpt::kNameUnits; ++i) {
        const Long unit = GetWord(entry, static_cast<Integer>(gpt::kName + 2 * i));
        if (unit == 0) break;
        name += IsControl(unit) ? u'.' : static_cast<char16_t>(unit);
    }
    return Trimmed(Utf8(name));
}

constexpr Long kMaxBytesPerSector = 4096;

bool IsPowerOfTwo(Long value) { return value > 0 && (value & (value - 1)) == 0; }

/// Whether a boot sector's fields are what a formatter of FAT volumes writes.
bool IsFat(const BootSectorRecord& boot) {
    return IsPowerOfTwo(boot.BytesPerSector) && boot.BytesPerSector >= kSectorBytes &&
           boot.BytesPerSector <= kMaxBytesPerSector && IsPowerOfTwo(boot.SectorsPerCluster) &&
           boot.ReservedSectors > 0 && boot.NumberOfFats > 0 && SectorCount(boot) > 0 &&
           (boot.MediaType == 0xF0 || boot.MediaType >= 0xF8);
}

/// Sets kind, label and sector size of a volume from its first sector.
void Describe(ByteBuffer sector, TableVolume& volume) {
    const BootSectorRecord boot = BootSectorFields(sector);
    if (boot.BootSignature != boot::kBootSignatureValue) return;
    if (HasText(sector, boot::kOemId, "NTFS    ")) {
        volume.Kind = VolumeKind::kNtfs;
    } else if (HasText(sector, boot::kOemId, "EXFAT   ")) {
        volume.Kind = VolumeKind::kExFat;
    } else if (IsFat(boot)) {
        const Long bits = FatTypeOf(SectorCount(boot) / boot.SectorsPerCluster);
        const bool large = bits == 32 || boot.SectorsPerFat == 0;
        volume.Kind = large        ? VolumeKind::kFat32
                      : bits == 16 ? VolumeKind::kFat16
                                   : VolumeKind::kFat12;
        volume.BytesPerSector = boot.BytesPerSector;
        if (!large && boot.Signature == boot::kLabelledSignature) {
            volume.Label = Trimmed(boot.VolumeLabel);
        }
    }
}

bool IsVolume(VolumeKind kind) {
    return kind != VolumeKind::kNoVolume && kind < VolumeKind::kOutside;
}

class TableReader {
  public:
    explicit TableReader(int file) : File(file) { Table.FileBytes = FileLength(file); }

    PartitionTable Read() {
        SectorBytes first{};
        if (!ReadAt(0, first)) return {};
        TableVolume whole;
        Describe(first, whole);
        Table.StartsWithVolume = IsVolume(whole.Kind);
        // A boot sector may contain any bytes at the offset of a table, or even a table.
        const bool hasSignature = GetWord(first, boot::kBootSignature) == boot::kBootSignatureValue;
        MbrIsValid = hasSignature && !Table.StartsWithVolume;

        const bool hasGpt = ReadGpts(first);
        ReadPrimaries(first, hasGpt);
        std::stable_sort(Table.Volumes.begin(), Table.Volumes.end(), Before);
        const auto same = [](const TableVolume& one, const TableVolume& other) {
            return !Before(one, other) && !Before(other, one);
        };
        Table.Volumes.erase(std::unique(Table.Volumes.begin(), Table.Volumes.end(), same),
                            Table.Volumes.end());
        return std::move(Table);
    }

  private:
    static bool Before(const TableVolume& one, const TableVolume& other) {
        return std::pair(one.Offset, one.Size) < std::pair(other.Offset, other.Size);
    }

    /// Fills the bytes from `offset` on, zeros after the end of the file.
    bool ReadAt(std::int64_t offset, std::span<Byte> bytes) {
        if (FailuresLeft == 0) return false;
        const bool read = ReadFileUpTo(File, offset, bytes) == bytes.size();
        if (!read) --FailuresLeft;
        return read;
    }

    void Add(TableVolume volume, bool trusted) {
        SectorBytes sector{};
        if (volume.Offset >= Table.FileBytes) {
            volume.Kind = VolumeKind::kOutside;
        } else if (volume.Offset > kLastSectorOffset) {
            volume.Kind = VolumeKind::kBeyondRead;
        } else if (!ReadAt(volume.Offset, sector)) {
            volume.Kind = VolumeKind::kUnreadable;
        } else {
            Describe(sector, volume);
        }
        if (trusted || IsVolume(volume.Kind)) Table.Volumes.push_back(std::move(volume));
    }

    // --- The master boot record. -----------------------------------------------------------------

    void ReadPrimaries(const SectorBytes& first, bool hasGpt) {
        for (int i = 0; i < mbr::kPrimaries; ++i) {
            const std::optional<TableVolume> volume = MbrEntry(first, i, 0);
            if (!volume || (hasGpt && volume->Type == mbr::kProtective)) continue;
            if (IsExtendedType(volume->Type)) {
                ReadChain(*volume);
            } else {
                Add(*volume, MbrIsValid);
            }
        }
    }

    /// An entry in use, with its offset relative to `base`.
    static std::optional<TableVolume> MbrEntry(ByteBuffer sector, int index, std::int64_t base) {
        const auto at = mbr::kEntries + static_cast<std::size_t>(index) * mbr::kEntryBytes;
        const ByteBuffer entry = sector.subspan(at, mbr::kEntryBytes);
        const std::int64_t start = Unsigned32(entry, mbr::kFirstSector) * kSectorBytes;
        const std::int64_t size = Unsigned32(entry, mbr::kSectors) * kSectorBytes;
        const bool valid = (entry[mbr::kStatus] & mbr::kStatusBits) == 0;
        if (!valid || entry[mbr::kType] == 0 || start == 0 || size == 0) return std::nullopt;
        return TableVolume{.Offset = base + start, .Size = size, .Type = entry[mbr::kType]};
    }

    /// The logical partitions of an extended one. Where the chain cannot be read from its
    /// beginning, the extended partition is listed instead; where it leaves the bytes that can be
    /// read, its next link is.
    void ReadChain(const TableVolume& extended) {
        SectorBytes sector{};
        std::optional<TableVolume> link = extended;
        std::size_t found = 0;
        while (link && Links.size() < kMaxLogical && Links.insert(link->Offset).second) {
            const std::int64_t at = link->Offset;
            const bool inFile = at < Table.FileBytes;
            const bool inReach = inFile && at <= kLastSectorOffset;
            if (!inReach || !ReadAt(at, sector) ||
                GetWord(sector, boot::kBootSignature) != boot::kBootSignatureValue) {
                if (at == extended.Offset || (inFile && !inReach)) Add(*link, MbrIsValid);
                return;
            }
            link.reset();
            for (int i = 0; i < mbr::kInLink; ++i) {
                const std::optional<TableVolume> next = MbrEntry(sector, i, 0);
                if (!next) continue;
                if (IsExtendedType(next->Type)) {
                    link = next;
                    link->Offset += extended.Offset;
                } else if (found++ < kMaxLogical) {
                    Add(*MbrEntry(sector, i, at), MbrIsValid);
                }
            }
        }
    }

    // --- The GUID partition table. ---------------------------------------------------------------

    struct Gpt {
        bool Trusted = false;
        std::int64_t PerSector = 0;
        std::int64_t EntryBytes = 0;
        std::vector<Byte> Entries{};
    };

    /// The table at the start of the file, or its copy at the end if only that is valid.
    bool ReadGpts(const SectorBytes& first) {
        bool isProtected = false;
        for (int i = 0; i < mbr::kPrimaries; ++i) {
            const std::optional<TableVolume> entry = MbrEntry(first, i, 0);
            isProtected = isProtected || (entry && entry->Type == mbr::kProtective);
        }
        std::optional<Gpt> best;
        for (const std::int64_t perSector : {std::int64_t{kSectorBytes}, std::int64_t{4096}}) {
            if (!best) best = GptAt(gpt::kHeaderSector * perSector, perSector);
        }
        if (isProtected && !(best && best->Trusted)) {
            std::optional<Gpt> copy = GptAt(Table.FileBytes - kSectorBytes, kSectorBytes);
            if (copy && (copy->Trusted || !best)) best = std::move(copy);
        }
        if (best) ReadEntries(*best);
        return best.has_value();
    }

    std::optional<Gpt> GptAt(std::int64_t at, std::int64_t perSector) {
        SectorBytes header{};
        if (at < 0 || at + kSectorBytes > Table.FileBytes || !ReadAt(at, header)) {
            return std::nullopt;
        }
        if (!HasText(header, 0, gpt::kSignature)) return std::nullopt;

        Gpt table{.PerSector = perSector, .EntryBytes = Unsigned32(header, gpt::kEntryBytes)};
        if (table.EntryBytes < gpt::kUsualEntryBytes || table.EntryBytes > kSectorBytes) {
            table.EntryBytes = gpt::kUsualEntryBytes;
        }
        std::int64_t start = SectorOffset(header, gpt::kEntriesSector, perSector).value_or(0);
        if (start == 0 || start >= Table.FileBytes) start = gpt::kUsualEntriesSector * perSector;
        std::int64_t count = Unsigned32(header, gpt::kEntryCount);
        if (count == 0) count = gpt::kUsualEntryCount;
        const std::int64_t available = std::max<std::int64_t>(Table.FileBytes - start, 0);
        const std::int64_t bytes = std::min({count * table.EntryBytes, available, kMaxGptBytes});
        table.Entries.resize(static_cast<std::size_t>(bytes));
        if (!ReadAt(start, table.Entries)) return std::nullopt;

        table.Trusted = HeaderIsValid(header) &&
                        Checksum(table.Entries) == Unsigned32(header, gpt::kEntriesChecksum);
        return table;
    }

    static bool HeaderIsValid(SectorBytes header) {
        const std::int64_t length = Unsigned32(header, gpt::kHeaderBytes);
        if (length < gpt::kHeaderEnd || length > kSectorBytes) return false;
        const std::int64_t stored = Unsigned32(header, gpt::kHeaderChecksum);
        std::fill_n(header.begin() + gpt::kHeaderChecksum, 4, Byte{0});
        return Checksum(ByteBuffer(header).first(static_cast<std::size_t>(length))) == stored;
    }

    void ReadEntries(const Gpt& table) {
        const auto step = static_cast<std::size_t>(table.EntryBytes);
        for (std::size_t at = 0; at + step <= table.Entries.size(); at += step) {
            const ByteBuffer entry = ByteBuffer(table.Entries).subspan(at, step);
            const ByteBuffer type = entry.subspan(gpt::kType, gpt::kTypeLength);
            if (std::all_of(type.begin(), type.end(), [](Byte byte) { return byte == 0; }))
                continue;
            const auto first = SectorOffset(entry, gpt::kFirstSector, table.PerSector);
            const auto last = SectorOffset(entry, gpt::kLastSector, table.PerSector);
            if (!first || !last || *first == 0 || *last < *first) continue;
            Add({.Offset = *first,
                 .Size = *last - *first + table.PerSector,
                 .Name = NameText(entry)},
                table.Trusted);
        }
    }

    int File;
    PartitionTable Table{};
    bool MbrIsValid = false;
    std::set<std::int64_t> Links{};  // offsets of the links read so far
    int FailuresLeft = kMaxFailures;
};

}  // namespace

PartitionTable ReadPartitionTable(int fileNumber) {
    try {
        return TableReader(fileNumber).Read();
    } catch (const RuntimeError&) {
        return {};
    }
}

bool IsExtendedType(Byte type) {
    return std::find(std::begin(mbr::kExtended), std::end(mbr::kExtended), type) !=
           std::end(mbr::kExtended);
}

}  // namespace tessel
