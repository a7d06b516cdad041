#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "fuzz/memoryHost.h"
#include "fuzz/userSimulator.h"
#include "tests/imageBuilder.h"

namespace {

/// A small disk with a bit of everything; if not `valid`, with chains that loop and cross.
tessel::images::Bytes Disk(bool valid) {
    using namespace tessel::images;
    Layout layout;
    layout.RootEntries = 64;
    layout.SmallSectors = 100;
    layout.SectorsPerFat = 1;
    Image image(layout);
    image.Add(Image::kRoot, {.Name = "MYDISK", .Attributes = 8});
    image.AddFile(Image::kRoot, {.Name = "README.TXT", .LongName = u"Read me first.txt"},
                  "Hello\r\nWorld\ttab\x1B\r\n");
    image.AddFile(Image::kRoot, {.Name = "BIG.BIN"}, std::string(3000, 'x'));
    const int sub = image.AddDirectory(Image::kRoot, {.Name = "SUB", .Attributes = 0x10});
    image.AddFile(sub, {.Name = "INNER.TXT"}, "inside");
    const int deep = image.AddDirectory(sub, {.Name = "DEEP.D", .Attributes = 0x10});
    image.Add(deep, {.Name = "LARGE.BIN", .Cluster = 3, .Size = 2'000'000'000});
    if (!valid) {
        for (int cluster = 2; cluster < 30; ++cluster) image.SetFat(cluster, cluster % 5 + 3);
    }
    return image.File();
}

}  // namespace

/// Runs the input as a script of the driver, with two small images to open.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessel;
    static const images::Bytes valid = Disk(true);
    static const images::Bytes knotted = Disk(false);
    UserSimulator user(true);
    memory::PutImage(std::string(memory::kImages) + "/disk.img", valid);
    memory::PutImage(std::string(memory::kImages) + "/knot.img", knotted);

    constexpr int kMaxLines = 100;
    std::istringstream script(std::string(reinterpret_cast<const char*>(data), size));
    std::string line;
    for (int i = 0; i < kMaxLines && std::getline(script, line); ++i) {
        if (line == "clock") continue;  // prints to standard error
        user.Do(line);
        if (user.Ended()) break;
    }
    return 0;
}
