#include <gtest/gtest.h>

#include <ctime>

#include "fuzz/memoryHost.h"
#include "fuzz/userSimulator.h"
#include "tests/imageBuilder.h"

/// A small disk, damaged at every position in turn. UserSimulator checks the window's invariants;
/// these tests check the time and the bytes written for each disk.
namespace tessel {
namespace {

using images::Bytes;

constexpr double kMaxSeconds = 1;
/// The user saves a few files and texts and stops the ones that claim to have two gigabytes.
constexpr std::int64_t kMaxWritten = 256 << 20;

/// Boot sector, FAT, directory and data of a sector or two each: small enough to try every byte,
/// and with every structure of a larger disk.
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

/// Opens the disk, tries everything and closes it; succeeds if all limits were kept.
::testing::AssertionResult Survives(const Bytes& disk) {
    const std::clock_t start = std::clock();
    UserSimulator user;
    const std::string path = std::string(memory::kImages) + "/disk.img";
    memory::PutImage(path, disk);
    user.Open(path);
    user.TryEverything();
    user.Do("menu Close");
    const double taken = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    if (taken > kMaxSeconds) return ::testing::AssertionFailure() << taken << " s";
    const std::int64_t written = memory::BytesWritten();
    if (written > kMaxWritten) return ::testing::AssertionFailure() << written << " bytes written";
    return ::testing::AssertionSuccess();
}

TEST(Sweep, SurvivesTruncationAtAnyLength) {
    const Bytes whole = SmallDisk();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        ASSERT_TRUE(Survives({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)}))
            << length << " bytes of the disk";
    }
}

/// Sets each byte of a sector in turn to values that tend to cause trouble.
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

TEST(Sweep, SurvivesAnyByteOfTheBootSector) { SweepBytes(0); }
TEST(Sweep, SurvivesAnyByteOfTheFat) { SweepBytes(1); }
TEST(Sweep, SurvivesAnyByteOfTheRootDirectory) { SweepBytes(2); }

}  // namespace
}  // namespace tessel
