#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "tests/imageBuilder.h"

/// make-image KIND COUNT FILE writes a FAT16 image that other tools create too slowly. KIND is
///   names  a subdirectory of COUNT empty files with long names,
///   files  a subdirectory of COUNT files of 4096 bytes with long names,
///   full   a FAT of 65519 entries and a root directory of COUNT entries, all in use.
namespace {

using tessel::images::Entry;
using tessel::images::Image;
using tessel::images::Layout;

std::string Digits(int number) {
    const std::string text = std::to_string(number);
    return std::string(5 - std::min<std::size_t>(5, text.size()), '0') + text;
}

Entry LongNamed(int number) {
    const std::string digits = Digits(number);
    Entry entry{.Name = "FIL" + digits + ".TXT", .LongName = u"A file with a long name, no. "};
    for (const char digit : digits) entry.LongName += static_cast<char16_t>(digit);
    entry.LongName += u".text";
    return entry;
}

Image Directory(int count, std::size_t bytes) {
    constexpr int kSectorsPerCluster = 8;
    Image image(Layout::Fat16(count + 5000, kSectorsPerCluster));
    const int directory = image.AddDirectory(Image::kRoot, {.Name = "MANY", .Attributes = 0x10});
    for (int i = 0; i < count; ++i) {
        std::string content = "This is file " + Digits(i) + ".\r\n";
        content.resize(bytes, static_cast<char>('a' + i % 26));
        if (bytes > 0) {
            image.AddFile(directory, LongNamed(i), content);
        } else {
            image.Add(directory, LongNamed(i));
        }
    }
    return image;
}

Image Full(int count) {
    constexpr int kMaxClusters = 65519;
    Layout layout = Layout::Fat16(kMaxClusters);
    layout.RootEntries = count;
    Image image(layout);
    for (int i = 0; i < count; ++i) image.Add(Image::kRoot, {.Name = "FIL" + Digits(i) + ".TXT"});
    for (int cluster = 2; cluster < kMaxClusters; ++cluster) {
        image.SetFat(cluster, cluster + 1 < kMaxClusters ? cluster + 1 : 0xFFFF);
    }
    return image;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string kind = argc == 4 ? argv[1] : "";
    const long wanted = argc == 4 ? std::strtol(argv[2], nullptr, 10) : 0;
    const bool known = kind == "names" || kind == "files" || kind == "full";
    if (!known || wanted < 1 || wanted > 65535) {
        std::cerr << "make-image names|files|full COUNT FILE\n";
        return 2;
    }
    const int count = static_cast<int>(wanted);
    const Image image = kind == "full" ? Full(count) : Directory(count, kind == "files" ? 4096 : 0);
    const tessel::images::Bytes bytes = image.File();
    std::ofstream file(argv[3], std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return file.flush() ? 0 : 1;
}
