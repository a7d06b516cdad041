#pragma once

#include <algorithm>
#include <array>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtimeError.h"

/// The directory now loaded: one row for every 32-byte entry read, in on-disk order.
namespace tessel {

/// Text of exactly N characters, filled up with blanks.
template <std::size_t N>
struct FixedText {
    FixedText() { Characters.fill(' '); }
    FixedText(std::string_view text) : FixedText() { text.copy(Characters.data(), N); }
    operator std::string_view() const { return {Characters.data(), N}; }
    std::array<char, N> Characters;
};

/// Text in the table's memory, which ends when the table is cleared. It cannot be copied, and so
/// neither can a row.
struct KeptText : std::u16string_view {
    KeptText() = default;
    explicit KeptText(std::u16string_view text) : std::u16string_view(text) {}
    KeptText(KeptText&&) = default;
    KeptText& operator=(KeptText&&) = default;
};

/// The decoded entry. Names keep their trailing blanks; numbers are as on the disk, in fields no
/// wider than theirs, because a directory has up to 65536 rows.
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
    KeptText LongName{};   ///< long-name rows: their part; files and directories: all of it
    bool InUse = false;    ///< first byte not 0: the directory goes on
    bool Deleted = false;
};

/// The rows. There are always 1024 of them at least, and at most as many as the format allows in
/// one directory; a row number outside the table raises 9.
class DirEntryTable {
  public:
    static constexpr Long kFewestRows = 1024;
    static constexpr Long kMostRows = 65536;

    DirEntryTable();
    DirEntry& operator()(Long row) {
        if (row < 0 || row >= Rows()) Raise(kSubscriptOutOfRange);
        return Table[static_cast<std::size_t>(row)];
    }
    Long Rows() const { return static_cast<Long>(Table.size()); }
    /// Back to 1024 empty rows, and no long names kept.
    void Clear();
    /// Makes room for row `row`; false when the table may not grow so far.
    bool Grow(Long row);
    /// A copy of `text` that lasts until the table is cleared.
    KeptText Keep(std::u16string_view text);

  private:
    std::vector<DirEntry> Table{};
    std::pmr::monotonic_buffer_resource LongNames;
};

extern DirEntryTable DirEntries;
extern Long DirEntryCount;  ///< rows filled

bool IsDeleted(Long row);
/// Attributes equal 8 exactly: no other bit, and a reserved byte of 0.
bool IsVolumeLabel(Long row);
bool IsDirectory(Long row);
bool IsLongName(Long row);
/// None of volume label, directory and long name.
bool IsFile(Long row);

/// Empties the table, and forgets what was read ahead of it.
void ClearDirEntries();
/// Adds a row "." for the root itself and then the root directory's entries, up to and with the
/// first whose InUse is false.
void LoadRootDirectory();
/// Adds the entries of a sub-directory's chain, of each cluster up to and with the first whose
/// InUse is false. Ends at a full table, and after as many clusters as the volume has. Raises 9 for
/// a cluster that is no 16-bit number.
void LoadSubDirectory(Long cluster);
/// Adds entry `index` of a directory's cluster (0: of the root) as a row; returns its InUse, false
/// also when the table is full. Reads ahead within the cluster. Raises 6 or 57 when the entry
/// cannot be read.
bool ReadDirEntry(Long cluster, Long index);
/// Gives each file and directory row the long name that the long-name rows in front of it make.
void AttachLongNames();
/// How many files that are not deleted stand in front of the end of the directory.
Long CountFiles();
/// The short name as NAME.EXT, or NAME alone when the extension is blank.
std::string EntryFileName(Long row);
/// The long name in UTF-8; "" when the row has none.
std::string LongNameText(Long row);

}  // namespace tessel
