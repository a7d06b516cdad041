#pragma once

#include <algorithm>
#include <array>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtimeError.h"

/// The loaded directory: one row per 32-byte entry read, in disk order.
namespace tessel {

/// Text of exactly N characters, padded with blanks.
template <std::size_t N>
struct FixedText {
    FixedText() { Characters.fill(' '); }
    FixedText(std::string_view text) : FixedText() { text.copy(Characters.data(), N); }
    operator std::string_view() const { return {Characters.data(), N}; }
    std::array<char, N> Characters;
};

/// Text in the table's memory, valid until the table is cleared. It cannot be copied, so that no
/// row is copied and outlives its name.
struct KeptText : std::u16string_view {
    KeptText() = default;
    explicit KeptText(std::u16string_view text) : std::u16string_view(text) {}
    KeptText(KeptText&&) = default;
    KeptText& operator=(KeptText&&) = default;
};

/// A decoded entry. Names keep their trailing blanks; numbers are as on the disk and no wider,
/// because a directory has up to 65536 rows.
struct DirEntry {
    FixedText<8> Name{};
    FixedText<3> Ext{};
    Word Attributes = 0;  ///< the attribute byte plus 256 times the reserved byte
    Byte Reserved = 0;
    Byte CreateTenths = 0;
    Word CreateTime = 0;
    Word CreateDate = 0;
    Word AccessDate = 0;
    Word ClusterHigh = 0;
    Word ModifyTime = 0;
    Word ModifyDate = 0;
    Word StartCluster = 0;
    Long FileSize = 0;     ///< bytes; signed on the disk
    Byte LfnSequence = 0;  ///< long-name rows: the sequence byte
    KeptText LongName{};   ///< long-name rows: their part of it; files and directories: all of it
    bool InUse = false;    ///< first byte is not 0: not the end of the directory
    bool Deleted = false;
};

/// The rows of the loaded directory: from 1024, filled or not, to the format's limit of 65536. A
/// row number outside the table raises 9.
class DirEntryTable {
  public:
    static constexpr Long kMinRows = 1024;
    static constexpr Long kMaxRows = 65536;

    DirEntryTable();
    DirEntry& operator()(Long row) {
        if (row < 0 || row >= Rows()) Raise(kSubscriptOutOfRange);
        return Table[static_cast<std::size_t>(row)];
    }
    Long Rows() const { return static_cast<Long>(Table.size()); }
    /// Resets the table to 1024 empty rows and releases the memory of all long names.
    void Clear();
    /// Enlarges the table to contain `row`, which is at most Rows(). Returns false when that
    /// exceeds the limit.
    bool Grow(Long row);
    /// Returns a copy of `text`, valid until the table is cleared.
    KeptText Keep(std::u16string_view text);

  private:
    std::vector<DirEntry> Table{};
    std::pmr::monotonic_buffer_resource LongNames;
};

extern DirEntryTable DirEntries;
extern Long DirEntryCount;  ///< number of filled rows

bool IsDeleted(Long row);
/// Whether Attributes is exactly 8: no other bit set, and a reserved byte of 0.
bool IsVolumeLabel(Long row);
bool IsDirectory(Long row);
bool IsLongName(Long row);
/// Whether the row is none of volume label, directory and long name.
bool IsFile(Long row);

/// Clears the table and the read-ahead buffer.
void ClearDirEntries();
/// Adds a row "." for the root itself and then the entries of the root directory, up to and
/// including the first that is not InUse. Raises 6 or 57 when an entry cannot be read; the rows
/// before it stay.
void LoadRootDirectory();
/// Adds the entries of the chain of a sub-directory: of each cluster those up to and including the
/// first that is not InUse. Ends when the table is full, and after as many clusters as the volume
/// has. Raises 9 for a cluster that is not a 16-bit number, and as LoadRootDirectory does.
void LoadSubDirectory(Long cluster);
/// Adds entry `index` of a directory cluster (0 for the root directory) as a row. Returns whether
/// it is InUse, and false when the table is full. Reads ahead within the cluster. Raises 6 or 57
/// when the entry cannot be read.
bool ReadDirEntry(Long cluster, Long index);
/// Sets LongName of each file and directory row from the long-name rows before it.
void AttachLongNames();
/// The number of files that are not deleted, up to the end of the directory.
Long CountFiles();
/// The short name as NAME.EXT, or NAME when the extension is blank.
std::string EntryFileName(Long row);
/// The long name in UTF-8; "" when the row has none.
std::string LongNameText(Long row);

}  // namespace tessel
