#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// FAT12 and FAT16 images, valid or damaged, built in memory independently of the program's code.
namespace tessel::images {

using Bytes = std::vector<std::uint8_t>;

/// The boot sector's fields; by default those of a 1.44 MB floppy. They may contradict the volume,
/// which always has sectors of 512 bytes, as many as the sector count says.
struct Layout {
    int BytesPerSector = 512, SectorsPerCluster = 1, ReservedSectors = 1, NumberOfFats = 2;
    int RootEntries = 224, SmallSectors = 2880, LargeSectors = 0, MediaType = 0xF0;
    int SectorsPerFat = 9, SectorsPerTrack = 18, NumberOfHeads = 2, BootSignature = 0xAA55;
    std::string SystemId = "FAT12   ";
    int Bits = 12;  ///< of a FAT entry
    std::size_t PartitionOffset = 0;
    /// A FAT16 volume with this number of clusters.
    static Layout Fat16(int clusters, int sectorsPerCluster = 1);
};

/// A directory entry; its three dates and two times are the same.
struct Entry {
    std::string Name;           ///< "README.TXT", or the 11 characters on the disk
    std::u16string LongName{};  ///< if not empty, its parts precede the entry
    int Attributes = 0x20, Cluster = 0;
    std::int64_t Size = -1;            ///< -1: the size of its content
    int Date = 0x246F, Time = 0x72C3;  ///< 15 March 1998, 14:22:06
};

Bytes EntryBytes(const Entry& entry);
/// The entries of a long name in on-disk order: 13 units each, the last part first.
std::vector<Bytes> LongNameEntries(const std::u16string& name);

struct Image {
    static constexpr int kRoot = 0;  ///< the number of the root among the directories
    explicit Image(const Layout& layout = {});

    /// The next free clusters, in ascending order.
    std::vector<int> Allocate(std::size_t count);
    void SetFat(int cluster, int value);
    /// Links clusters in this order; the entry of the last one becomes `end`.
    void Link(const std::vector<int>& clusters, int end = 0xFFFF);
    /// The offset of a cluster in Volume.
    std::size_t At(int cluster) const;
    /// Overwrites bytes of the volume; drops those past its end.
    void Poke(std::size_t offset, const std::string& bytes);
    /// Adds an entry to a directory, and clusters to the directory when they are needed.
    void Add(int directory, const Entry& entry);
    void AddRaw(int directory, const Bytes& entry);
    /// Adds a file in these clusters, or in the next free ones.
    void AddFile(int directory, Entry entry, const std::string& content,
                 std::vector<int> clusters = {});
    /// Adds a directory with "." and ".."; returns its number.
    int AddDirectory(int parent, Entry entry);
    /// The image file: filler up to the partition offset, then the volume.
    Bytes File() const;

    Layout Fields;
    Bytes Volume;
    int NextFree = 2;  ///< the first cluster after all that are in use

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
