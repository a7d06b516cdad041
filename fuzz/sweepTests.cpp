#include <gtest/gtest.h>

#include <ctime>

#include "fuzz/memoryHost.h"
#include "fuzz/userSimulator.h"
#include "tests/imageBuilder.h"

/// A small disk, damaged in every place in turn. The user holds the window against what must
/// always be true; here each visit is held against its bounds.
namespace tessel {
namespace {

using images::Bytes;

constexpr double kMostSeconds = 1;
/// The user saves a few files and texts: a claim of two gigabytes is stopped long before.
constexpr std::int64_t kMostWritten = 256 << 20;

/// Boot sector, FAT, directory and data of a sector or two each: what is wrong with one byte of a
/// larger disk is wrong with this one.
Bytes SmallDisk() {
    images::Layout layout;
    layout.RootEntries = 16;
    layout.NumberOfFats = 1;
    layout.SectorsPerFat = 1;
    layout.SmallSectors = 7;
    images::Image image(layout);
    image.Add(images::Image::kRoot, {.Name = "MYDISK", .Attributes = 8});
    image.AddFile(images::Image::kRoot, {.Name = "README.TXT", .LongName = u"Read me.txt"},
                  std::string(600, 'x'), {2, 4});
    const int sub = image.AddDirectory(images::Image::kRoot, {.Name = "SUB", .Attributes = 0x10});
    image.AddFile(sub, {.Name = "INNER.TXT"}, "inside");
    return image.File();
}

/// Opens the disk, looks at everything, and closes it; whether all bounds held.
::testing::AssertionResult Survives(const Bytes& disk) {
    const std::clock_t start = std::clock();
    UserSimulator user;
    const std::string path = std::string(memory::kImages) + "/disk.img";
    memory::PutImage(path, disk);
    user.Open(path);
    user.TryEverything();
    user.Do("menu Close");
    const double taken = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    if (taken > kMostSeconds) return ::testing::AssertionFailure() << taken << " s";
    const std::int64_t written = memory::BytesWritten();
    if (written > kMostWritten) return ::testing::AssertionFailure() << written << " bytes written";
    return ::testing::AssertionSuccess();
}

TEST(Sweep, ADiskCutAnywhereIsSurvived) {
    const Bytes whole = SmallDisk();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        ASSERT_TRUE(Survives({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)}))
            << length << " bytes of the disk";
    }
}

/// Each byte of a sector in turn, as values that tend to hurt.
void SweepBytes(std::size_t sector) {
    const Bytes whole = SmallDisk();
    for (std::size_t at = sector * 512; at < (sector + 1) * 512; ++at) {
        for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
            if (whole[at] == value) continue;
            Bytes damaged = whole;
            damaged[at] = static_cast<std::uint8_t>(value);
            ASSERT_TRUE(Survives(damaged)) << "byte " << at << " is " << value;
        }
    }
}

TEST(Sweep, AnyByteOfTheBootSectorIsSurvived) { SweepBytes(0); }
TEST(Sweep, AnyByteOfTheFatIsSurvived) { SweepBytes(1); }
TEST(Sweep, AnyByteOfTheRootIsSurvived) { SweepBytes(2); }

}  // namespace
}  // namespace tessel
