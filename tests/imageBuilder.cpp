#include "tests/imageBuilder.h"

#include <algorithm>
#include <numeric>

namespace tessel::images {
namespace {

struct Field {
    std::size_t At;
    std::int64_t Value;
    int Width;
};

/// Writes little-endian fields; drops bytes past the end.
void Put(Bytes& bytes, const std::vector<Field>& fields) {
    for (const Field& field : fields) {
        for (int i = 0; i < field.Width; ++i) {
            const std::size_t at = field.At + static_cast<std::size_t>(i);
            if (at < bytes.size()) bytes[at] = static_cast<std::uint8_t>(field.Value >> 8 * i);
        }
    }
}

/// The 11 characters on the disk.
std::string DiskName(const std::string& name) {
    const std::size_t dot = name[0] == '.' ? name.npos : name.find('.');
    if (name.size() == 11 && dot == name.npos) return name;
    std::string padded = name.substr(0, dot);
    padded.resize(8, ' ');
    if (dot != name.npos) padded += name.substr(dot + 1);
    padded.resize(11, ' ');
    return padded;
}

}  // namespace

Layout Layout::Fat16(int clusters, int sectorsPerCluster) {
    const int sectors = clusters * sectorsPerCluster;
    Layout layout;
    layout.Bits = 16;
    layout.SystemId = "FAT16   ";
    layout.MediaType = 0xF8;
    layout.RootEntries = 512;
    layout.SectorsPerCluster = sectorsPerCluster;
    layout.SectorsPerFat = (clusters * 2 + 511) / 512;
    layout.SmallSectors = sectors < 65536 ? sectors : 0;
    layout.LargeSectors = sectors < 65536 ? 0 : sectors;
    return layout;
}

Bytes EntryBytes(const Entry& entry) {
    const std::string name = DiskName(entry.Name);
    Bytes bytes(name.begin(), name.end());
    bytes.resize(32);
    Put(bytes, {{11, entry.Attributes, 2},
                {14, entry.Time, 2},
                {16, entry.Date, 2},
                {18, entry.Date, 2},
                {22, entry.Time, 2},
                {24, entry.Date, 2},
                {26, entry.Cluster, 2},
                {28, std::max<std::int64_t>(entry.Size, 0), 4}});
    return bytes;
}

std::vector<Bytes> LongNameEntries(const std::u16string& name) {
    std::vector<Bytes> entries;
    const std::size_t parts = (name.size() + 12) / 13;
    for (std::size_t part = parts; part-- > 0;) {
        Bytes bytes(32);
        const std::size_t last = part + 1 == parts ? 0x40 : 0;
        Put(bytes, {{0, static_cast<std::int64_t>(part + 1 + last), 1}, {11, 0x0F, 1}});
        std::size_t i = part * 13;
        for (const std::size_t at : {1U, 3U, 5U, 7U, 9U, 14U, 16U, 18U, 20U, 22U, 24U, 28U, 30U}) {
            Put(bytes, {{at, i < name.size() ? name[i] : i == name.size() ? 0 : 0xFFFF, 2}});
            ++i;
        }
        entries.push_back(bytes);
    }
    return entries;
}

Image::Image(const Layout& layout) : Fields(layout) {
    const Layout& l = layout;
    Volume.resize(Sector(std::max(1, l.SmallSectors != 0 ? l.SmallSectors : l.LargeSectors)));
    Put(Volume, {{0, 0x903CEB, 3},
                 {11, l.BytesPerSector, 2},
                 {13, l.SectorsPerCluster, 1},
                 {14, l.ReservedSectors, 2},
                 {16, l.NumberOfFats, 1},
                 {17, l.RootEntries, 2},
                 {19, l.SmallSectors, 2},
                 {21, l.MediaType, 1},
                 {22, l.SectorsPerFat, 2},
                 {24, l.SectorsPerTrack, 2},
                 {26, l.NumberOfHeads, 2},
                 {32, l.LargeSectors, 4},
                 {38, 0x29, 1},
                 {39, 0x9C3A61E4, 4},
                 {510, l.BootSignature, 2}});
    Poke(3, "MSDOS5.0");
    Poke(43, "NO NAME    " + l.SystemId);
    SetFat(0, 0xFF00 | l.MediaType);
    SetFat(1, 0xFFFF);
}

void Image::SetFat(int cluster, int value) {
    const auto c = static_cast<std::size_t>(cluster);
    for (int fat = 0; fat < Fields.NumberOfFats; ++fat) {
        const std::size_t start = Sector(Fields.ReservedSectors + fat * Fields.SectorsPerFat);
        const std::size_t at = start + (Fields.Bits == 16 ? 2 * c : c + c / 2);
        if (at + 2 > Volume.size()) continue;
        const int old = Volume[at] | Volume[at + 1] << 8;
        int word = value;
        if (Fields.Bits == 12) {
            word = c % 2 == 1 ? (old & 0x000F) | value << 4 : (old & 0xF000) | (value & 0xFFF);
        }
        Put(Volume, {{at, word, 2}});
    }
}

void Image::Link(const std::vector<int>& clusters, int end) {
    for (std::size_t i = 0; i < clusters.size(); ++i) {
        SetFat(clusters[i], i + 1 < clusters.size() ? clusters[i + 1] : end);
        NextFree = std::max(NextFree, clusters[i] + 1);
    }
}

std::vector<int> Image::Allocate(std::size_t count) {
    std::vector<int> clusters(count);
    std::iota(clusters.begin(), clusters.end(), NextFree);
    return clusters;
}

std::size_t Image::At(int cluster) const {
    return Sector(Fields.ReservedSectors + Fields.NumberOfFats * Fields.SectorsPerFat +
                  Fields.RootEntries * 32 / 512 + (cluster - 2) * Fields.SectorsPerCluster);
}

void Image::Poke(std::size_t offset, const std::string& bytes) {
    if (offset >= Volume.size()) return;
    std::copy_n(bytes.begin(), std::min(bytes.size(), Volume.size() - offset),
                Volume.begin() + static_cast<std::ptrdiff_t>(offset));
}

void Image::AddRaw(int directory, const Bytes& entry) {
    Directory& to = Directories[static_cast<std::size_t>(directory)];
    std::size_t at = to.Entries++ * 32;
    if (directory == 0) {
        at += Sector(Fields.ReservedSectors + Fields.NumberOfFats * Fields.SectorsPerFat);
    } else {
        if (at / ClusterBytes() == to.Clusters.size()) {
            const int next = NextFree;
            Link(to.Clusters.empty() ? std::vector{next} : std::vector{to.Clusters.back(), next});
            to.Clusters.push_back(next);
        }
        at = At(to.Clusters[at / ClusterBytes()]) + at % ClusterBytes();
    }
    Poke(at, std::string(entry.begin(), entry.end()));
}

void Image::Add(int directory, const Entry& entry) {
    for (const Bytes& part : LongNameEntries(entry.LongName)) AddRaw(directory, part);
    AddRaw(directory, EntryBytes(entry));
}

void Image::AddFile(int directory, Entry entry, const std::string& content,
                    std::vector<int> clusters) {
    const std::size_t count = (content.size() + ClusterBytes() - 1) / ClusterBytes();
    if (clusters.empty()) clusters = Allocate(count);
    Link(clusters);
    for (std::size_t i = 0; i < count && i < clusters.size(); ++i) {
        Poke(At(clusters[i]), content.substr(i * ClusterBytes(), ClusterBytes()));
    }
    if (!clusters.empty()) entry.Cluster = clusters[0];
    if (entry.Size == -1) entry.Size = static_cast<std::int64_t>(content.size());
    Add(directory, entry);
}

int Image::AddDirectory(int parent, Entry entry) {
    const int number = static_cast<int>(Directories.size());
    const std::vector<int>& above = Directories[static_cast<std::size_t>(parent)].Clusters;
    const int aboveCluster = above.empty() ? 0 : above[0];
    entry.Cluster = NextFree;
    Directories.push_back({});
    Add(number, {.Name = ".", .Attributes = 0x10, .Cluster = entry.Cluster});
    Add(number, {.Name = "..", .Attributes = 0x10, .Cluster = aboveCluster});
    entry.Attributes = 0x10;
    Add(parent, entry);
    return number;
}

Bytes Image::File() const {
    Bytes file(Fields.PartitionOffset, 0xAA);
    file.insert(file.end(), Volume.begin(), Volume.end());
    return file;
}

}  // namespace tessel::images
