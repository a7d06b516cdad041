#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// FAT12 and FAT16 images, sound ones and broken ones, built in memory without the program's code.
namespace tessel::images {

using Bytes = std::vector<std::uint8_t>;

/// The boot sector's fields; by default those of a floppy of 1.44 MB. They need not be true: only
/// the size of the volume, in sectors of 512 bytes, comes from the sector counts.
struct Layout {
    int BytesPerSector = 512, SectorsPerCluster = 1, ReservedSectors = 1, NumberOfFats = 2;
    int RootEntries = 224, SmallSectors = 2880, LargeSectors = 0, MediaType = 0xF0;
    int SectorsPerFat = 9, SectorsPerTrack = 18, NumberOfHeads = 2, BootSignature = 0xAA55;
    std::string SystemId = "FAT12   ";
    int Bits = 12;  ///< of a FAT entry
    std::size_t PartitionOffset = 0;
    /// A FAT16 volume of so many clusters.
    static Layout Fat16(int clusters, int sectorsPerCluster = 1);
};

/// A directory entry; its three dates and two times are the same.
struct Entry {
    std::string Name;           ///< "README.TXT", or the 11 characters as they stand on the disk
    std::u16string LongName{};  ///< stands in front of the entry when it is not empty
    int Attributes = 0x20, Cluster = 0;
    std::int64_t Size = -1;            ///< -1: that of its content
    int Date = 0x246F, Time = 0x72C3;  ///< 15 March 1998, 14:22:06
};

Bytes EntryBytes(const Entry& entry);
/// The entries of a long name in on-disk order: 13 units each, the last part first.
std::vector<Bytes> LongNameEntries(const std::u16string& name);

struct Image {
    static constexpr int kRoot = 0;  ///< the number of the root among the directories
    explicit Image(const Layout& layout = {});

    /// The next free clusters, in order.
    std::vector<int> Allocate(std::size_t count);
    void SetFat(int cluster, int value);
    /// Links clusters in this order; the last one's entry becomes `end`.
    void Link(const std::vector<int>& clusters, int end = 0xFFFF);
    /// Where a cluster begins in Volume.
    std::size_t At(int cluster) const;
    /// Puts bytes over the volume, as far as it goes.
    void Poke(std::size_t offset, const std::string& bytes);
    /// Adds an entry to a directory, which grows by clusters as it must.
    void Add(int directory, const Entry& entry);
    void AddRaw(int directory, const Bytes& entry);
    /// Adds a file in these clusters, or in the next free ones.
    void AddFile(int directory, Entry entry, const std::string& content,
                 std::vector<int> clusters = {});
    /// Adds a directory with its "." and ".."; returns its number.
    int AddDirectory(int parent, Entry entry);
    /// The image file: the partition offset's bytes, and the volume.
    Bytes File() const;

    Layout Fields;
    Bytes Volume;
    int NextFree = 2;  ///< the first cluster that nothing was put into

  private:
    struct Directory {
        std::vector<int> Clusters;  // none for the root
        std::size_t Entries = 0;
    };
    std::size_t ClusterBytes() const {
        return static_cast<std::size_t>(Fields.SectorsPerCluster) * 512;
    }
    std::size_t Sector(int number) const { return static_cast<std::size_t>(number) * 512; }
    std::vector<Directory> Directories{Directory{}};
};

}  // namespace tessel::images
