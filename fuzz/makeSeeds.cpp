#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "tests/tableBuilder.h"

namespace {

using namespace tessel::images;

/// A volume of a few kilobytes that uses every feature of the format.
Bytes SmallVolume(Layout layout, std::size_t keptClusters) {
    layout.RootEntries = 32;
    layout.NumberOfFats = 1;
    Image image(layout);
    image.Add(Image::kRoot, {.Name = "MYDISK", .Attributes = 8});
    image.AddFile(Image::kRoot, {.Name = "README.TXT", .LongName = u"Read me \u00FC\U0001F4BE.txt"},
                  "Hello\r\nWorld\ttab\x1B\r\n");
    image.AddFile(Image::kRoot, {.Name = "BIG.BIN"}, std::string(1100, 'x'), {9, 7, 8});
    const int sub = image.AddDirectory(
        Image::kRoot, {.Name = "SUBFOL~1", .LongName = u"Sub folder", .Attributes = 0x10});
    image.AddFile(sub, {.Name = "INNER.TXT"}, "inside");
    image.Add(sub, {.Name = "LOOP.BIN", .Cluster = 12, .Size = 1'000'000'000});
    image.Add(sub, {.Name = "\xE5"
                            "ELETED TXT",
                    .Cluster = 9,
                    .Size = 9});
    image.Link({12, 13}, 12);
    Bytes bytes = image.File();
    bytes.resize(std::min(bytes.size(), layout.PartitionOffset + image.At(2) + keptClusters * 512));
    return bytes;
}

Layout Fat12() {
    Layout layout;
    layout.SectorsPerFat = 1;
    layout.SmallSectors = 40;
    return layout;
}

/// Choices, offset, start of the second image, position of the read error; see imageFuzzer.cpp.
std::string Head(unsigned choices, unsigned offset, unsigned split, unsigned fails) {
    std::string head;
    for (const unsigned value :
         {choices, offset & 255, offset >> 8 & 255, offset >> 16, split, fails}) {
        head += static_cast<char>(value);
    }
    return head;
}

struct Folder {
    std::filesystem::path Path;
    int Count = 0;
    void Put(const std::string& content) {
        std::ofstream(Path / ("seed-" + std::to_string(Count++)), std::ios::binary) << content;
    }
};

std::string Text(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

void PutImages(Folder folder) {
    const std::string fat12 = Text(SmallVolume(Fat12(), 12));
    const std::string fat16 = Text(SmallVolume(Layout::Fat16(4100), 12));
    const std::string fat32 = Text(SmallVolume(Layout::Fat16(65530), 0)).substr(0, 1024);
    Layout later = Fat12();
    later.PartitionOffset = 1024;
    const std::string offset = Text(SmallVolume(later, 8));
    folder.Put(Head(0, 0, 255, 0) + fat12);
    folder.Put(Head(0, 0, 255, 0) + fat16);
    folder.Put(Head(4, 1, 255, 0) + offset);
    folder.Put(Head(1, 0, 255, 40) + fat12);
    folder.Put(Head(0, 0, 127, 0) + fat12 + fat12.substr(0, fat12.size() - 3));
    folder.Put(Head(2, 0, 255 - 11, 0) + fat16 + fat32);
    Bytes disk(1024);
    PutMbr(disk, 0, {{0x80, 1, 2, 40}});
    folder.Put(Head(0, 0, 255, 0) + Text(disk) + fat12);
}

/// The position of the read error, and a disk with a table; see tableFuzzer.cpp.
void PutTables(Folder folder) {
    const std::string noFailure = "\xFF";
    Bytes disk(12 * 512);
    PutVolume(disk, 4, "ONE        ");
    PutVolume(disk, 8, "TWO        ");
    PutMbr(disk, 0, {{0x80, 1, 4, 4}, {0, 0x83, 7, 1}, {0, 0x0F, 3, 9}});
    PutMbr(disk, 3, {{0, 6, 5, 4}, {0, 5, 7, 2}});
    PutMbr(disk, 10, {{0, 6, 1, 1}, {0, 5, 7, 2}});
    folder.Put(noFailure + Text(disk));
    folder.Put("\x70" + Text(disk));
    PutMbr(disk, 0, {{0, 0xEE, 1, 11}, {0, 0, 0, 0}, {0, 0, 0, 0}});
    PutGptEntry(disk, 1024, 4, 7, u"K\u00F6ln");
    PutGptEntry(disk, 1152, 8, 10, u"a\x01\xD800");
    PutGptHeader(disk, 11 * 512, {.Count = 4});
    folder.Put(noFailure + Text(disk));
    PutGptHeader(disk, 512, {.Count = 4});
    folder.Put(noFailure + Text(disk));
    disk[530] ^= 1;
    folder.Put(noFailure + Text(disk));
}

void PutScripts(Folder folder) {
    for (const char* image : {"/images/disk.img", "/images/knot.img"}) {
        const std::string open = "file " + std::string(image) + "\nmenu Open\n";
        folder.Put(open +
                   "select 1\nchoose Dump\nselect 2\nfile /chosen/a\nmenu Save File\n"
                   "press FAT0\nfile /chosen/b\nmenu Save Display\nshow display\n");
        folder.Put(open +
                   "double 3\nchoose Display\nselect 2\ndouble 3\nstop-at 2\nselect 2\n"
                   "folder /chosen\nmenu Save Directory\ndouble 1\npress Directory\n"
                   "menu Close\nshow list\n");
        folder.Put("input 1k\nmenu Offset\n" + open +
                   "press Boot Sector\npress Root\ninput\n"
                   "folder-close\nmenu Save Directory\nshow labels\nshow enabled\nmenu Exit\n");
    }
}

}  // namespace

/// make-seeds FOLDER: writes the first inputs of the fuzzers to FOLDER/image and FOLDER/script.
int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const std::pair<const char*, void (*)(Folder)> targets[] = {
        {"image", PutImages}, {"script", PutScripts}, {"table", PutTables}};
    for (const auto& [name, put] : targets) {
        const Folder folder{std::filesystem::path(argv[1]) / name};
        std::filesystem::create_directories(folder.Path);
        put(folder);
    }
}
