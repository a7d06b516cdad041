#pragma once

#include <string>
#include <vector>

#include "platform/runtimeError.h"

/// The directory now loaded: one row for every 32-byte entry read, in on-disk order.
namespace tessel {

/// The decoded entry. Names keep their trailing blanks; numbers are as on the disk.
struct DirEntry {
    std::string Name{};   ///< 8 characters
    std::string Ext{};    ///< 3 characters
    Long Attributes = 0;  ///< the attribute byte plus 256 times the reserved byte
    Long Reserved = 0;
    Long CreateTenths = 0;
    Long CreateTime = 0;
    Long CreateDate = 0;
    Long AccessDate = 0;
    Long ClusterHigh = 0;
    Long ModifyTime = 0;
    Long ModifyDate = 0;
    Long StartCluster = 0;
    Long FileSize = 0;          ///< bytes; signed on the disk
    Long LfnSequence = 0;       ///< long-name rows: the sequence byte
    std::u16string LongName{};  ///< long-name rows: own part; files and directories: the whole name
    bool InUse = false;         ///< first byte not 0: the directory goes on
    bool Deleted = false;
};

/// The rows. There are always 1024 of them at least, and at most as many as the format allows in
/// one directory; a row number outside the table raises 9.
class DirEntryTable {
  public:
    static constexpr Long kFewestRows = 1024;
    static constexpr Long kMostRows = 65536;

    DirEntryTable();
    DirEntry& operator()(Long row);
    Long Rows() const { return static_cast<Long>(Table.size()); }
    /// Back to 1024 empty rows.
    void Clear();
    /// Makes room for row `row`; false when the table may not grow so far.
    bool Grow(Long row);

  private:
    std::vector<DirEntry> Table{};
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

/// Empties the table.
void ClearDirEntries();
/// Adds a row "." for the root itself and then the root directory's entries, up to and with the
/// first whose InUse is false.
void LoadRootDirectory();
/// Adds the entries of a sub-directory's chain, of each cluster up to and with the first whose
/// InUse is false. Ends at a full table, and after as many clusters as the volume has.
void LoadSubDirectory(Long cluster);
/// Adds entry `index` of a directory's cluster (0: of the root) as a row; returns its InUse. Raises
/// 6 or 57 when it cannot be read.
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
