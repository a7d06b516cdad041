#include <algorithm>

#include "tests/fixture.h"
#include "tests/tableBuilder.h"
#include "volume/modDisks.h"
#include "volume/partitionTable.h"

/// Partition tables, valid and damaged; and the explanation of a volume's type.
namespace tessel {
namespace {

using namespace images;

const std::string kWhole = "0   whole file\n";

class PartitionTest : public WindowTest {
  protected:
    /// The lines offered once a file with these bytes was opened.
    std::string Lines(const Bytes& disk) {
        Write("disk.img", disk);
        Run("file @/disk.img\nmenu Open\nmenu Close");
        return Show("offsets");
    }
};

/// A disk of 200 sectors with two volumes, at sectors 10 and 30, and no table.
Bytes Disk(std::size_t sectors = 200) {
    Bytes disk(sectors * 512);
    PutVolume(disk, 10, "ONE        ");
    PutVolume(disk, 30, "TWO        ");
    return disk;
}
const std::string kOne = "5120   FAT12   10.0 KB   ONE\n";
const std::string kTwo = "15360   FAT12   10.0 KB   TWO\n";

TEST_F(PartitionTest, MasterBootRecordsAreListedAsFarAsTheyCanBeTrusted) {
    struct Row {
        const char* Name;
        std::vector<std::pair<std::size_t, std::vector<MbrEntry>>> Tables;  // by sector
        std::string Lines;
    };
    const MbrEntry one = {0x80, 1, 10, 20};
    const MbrEntry two = {0, 6, 30, 20};
    const MbrEntry extended = {0, 0x0F, 5, 100};  // its links at sectors 5 and 25
    const MbrEntry logical = {0, 1, 5, 20};
    const MbrEntry link = {0, 5, 20, 25};
    const Row rows[] = {
        {"in the wrong order, one of them twice", {{0, {two, one, two}}}, kOne + kTwo},
        {"nothing in use", {{0, {{0, 0, 10, 20}, {0, 6, 0, 20}, {0, 6, 30, 0}}}}, ""},
        {"no status", {{0, {{1, 6, 10, 20}, {0x7F, 6, 10, 20}, {0x81, 6, 30, 20}}}}, ""},
        {"overlapping", {{0, {{0, 1, 10, 30}, two}}}, "5120   FAT12   15.0 KB   ONE\n" + kTwo},
        {"outside",
         {{0, {{0, 6, 30, 171}, {0, 6, 200, 1}, {0, 0x83, 0xFFFFFFFF, 0xFFFFFFFF}}}},
         "15360   FAT12   85.5 KB   TWO   ends outside the file\n"
         "102400   FAT16, outside the file   512 bytes\toff\n"
         "2199023255040   Linux, outside the file   2048.0 GB\toff\n"},
        {"other kinds",
         {{0, {{0, 0xC3, 12, 1}, {0, 0x16, 13, 1}, {0, 0xEE, 14, 1}, {0, 5, 60, 9}}}},
         "6144   type C3, not supported   512 bytes\toff\n"
         "6656   FAT16, no FAT boot sector   512 bytes\toff\n"
         "7168   GPT, not supported   512 bytes\toff\n"
         "30720   extended, no table   4.5 KB\toff\n"},
        {"chain", {{0, {extended}}, {5, {logical, link}}, {25, {logical}}}, kOne + kTwo},
        {"links first", {{0, {extended}}, {5, {link, logical}}, {25, {logical}}}, kOne + kTwo},
        {"chain back", {{0, {extended}}, {5, {logical, link}}, {25, {logical, link}}}, kOne + kTwo},
        {"chain to nothing", {{0, {extended}}, {5, {logical, link}}}, kOne},
        {"chain outside", {{0, {extended}}, {5, {logical, {0, 5, 5000, 1}}}}, kOne},
    };
    for (const Row& row : rows) {
        Bytes disk = Disk();
        for (const auto& [sector, entries] : row.Tables) PutMbr(disk, sector, entries);
        EXPECT_EQ(Lines(disk), kWhole + row.Lines) << row.Name;
    }

    // With a boot sector in the same sector, or without a signature, a table offers only volumes
    // that are recognised.
    Bytes disk = Disk();
    PutVolume(disk, 0, "FLOPPY     ");
    PutMbr(disk, 0, {one, {0, 6, 100, 5}});
    EXPECT_EQ(Lines(disk), kWhole + kOne);
    PutNumber(disk, 0, 0, 446);
    EXPECT_EQ(Lines(disk), kWhole + kOne + "51200   FAT16, no FAT boot sector   2.5 KB\toff\n");
    PutNumber(disk, 510, 0, 2);
    EXPECT_EQ(Lines(disk), kWhole + kOne);

    // A chain longer than the limit.
    disk = Disk(1000);
    PutMbr(disk, 0, {{0, 5, 100, 900}});
    for (std::size_t i = 0; i < 200; ++i) {
        PutMbr(disk, 100 + 2 * i, {{0, 6, 1, 1}, {0, 5, 2 * i + 2, 2}});
    }
    const std::string lines = Lines(disk);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 129);
    EXPECT_EQ(Lines({}), kWhole) << "no volume of the previous image";
}

TEST_F(PartitionTest, AFailingMediumOffersTheReadableVolumes) {
    Bytes disk = Disk();
    PutMbr(disk, 0, {{0, 1, 10, 20}, {0, 5, 25, 100}, {0, 6, 80, 1}});
    PutMbr(disk, 25, {{0, 1, 5, 20}});
    const std::string last = "40960   FAT16, no FAT boot sector   512 bytes\toff\n";
    const std::tuple<std::size_t, std::size_t, std::string> rows[] = {
        {511, 512, ""},
        {600, 601, kOne + kTwo + last},
        {10 * 512, 11 * 512, kTwo + "5120   FAT12, cannot be read   10.0 KB\toff\n" + last},
        {25 * 512, 26 * 512, kOne + "12800   extended, cannot be read   50.0 KB\toff\n" + last}};
    for (const auto& [from, to, lines] : rows) {
        FailReads(Write("disk.img", disk), from, to);
        EXPECT_EQ(Lines(disk), kWhole + lines) << from;
        StopFailingReads();
    }
    Run("file @/gone.img\nmenu Open");
    EXPECT_EQ(Show("offsets"), kWhole);
}

TEST_F(PartitionTest, GuidTablesAreListedAsFarAsTheyCanBeTrusted) {
    const std::string one = "5120   FAT12   10.0 KB   ONE   \"K\u00F6ln\"\n";
    const std::string two = "15360   FAT12   10.0 KB   TWO   \"a...\uFFFDz\"\n";
    const std::string none = "30720   no FAT boot sector   5.0 KB\toff\n";
    const auto zero = [](Bytes& disk, std::size_t at) { PutNumber(disk, at, 0, 512); };
    struct Row {
        const char* Name;
        std::function<void(Bytes&)> Change;
        std::string Lines;
    };
    const Row rows[] = {
        {"valid", [](Bytes&) {}, one + two + none},
        {"wrong header checksum", [](Bytes& d) { PutNumber(d, 530, 1, 1); }, one + two},
        {"changed entries", [](Bytes& d) { PutNumber(d, 1024 + 500, 1, 1); }, one + two},
        {"header of 0 bytes", [](Bytes& d) { PutNumber(d, 524, 0, 4); }, one + two},
        {"entries of 0 bytes", [](Bytes& d) { PutNumber(d, 596, 0, 4); }, one + two},
        {"entries of 4 GB each", [](Bytes& d) { PutNumber(d, 596, ~0U, 4); }, one + two},
        {"no entries", [](Bytes& d) { PutNumber(d, 592, 0, 4); }, one + two},
        {"4 billion entries", [](Bytes& d) { PutNumber(d, 592, ~0U, 4); }, one + two},
        {"entries at sector 0", [](Bytes& d) { PutNumber(d, 584, 0, 8); }, one + two},
        {"entries outside", [](Bytes& d) { PutNumber(d, 584, 1ULL << 31, 8); }, one + two},
        {"entries after any file", [](Bytes& d) { PutNumber(d, 584, ~0ULL, 8); }, one + two},
        {"no protective record", [&](Bytes& d) { zero(d, 0); }, one + two + none},
        {"header missing, copy valid",
         [&](Bytes& d) { PutGptHeader(d, 199 * 512, {.Count = 4}), zero(d, 512); },
         one + two + none},
        {"both missing", [&](Bytes& d) { zero(d, 512); },
         "512   GPT, not supported   99.5 KB\toff\n"},
        {"partitions that end before they begin, begin at 0, or are after any file",
         [](Bytes& d) {
             PutGptEntry(d, 1024, 29, 10);
             PutGptEntry(d, 1152, 0, 10);
             PutGptEntry(d, 1280, ~0ULL - 9, ~0ULL);
             PutGptHeader(d, 512, {.Count = 4});
         },
         ""},
        {"sectors of 4096 bytes",
         [&](Bytes& d) {
             PutNumber(d, 512, 0, 4096);
             PutVolume(d, 24, "LARGE      ");
             PutGptEntry(d, 8192, 3, 4);
             PutGptHeader(d, 4096, {.Count = 4}, 4096);
         },
         "12288   FAT12   8.0 KB   LARGE\n"},
    };
    for (const Row& row : rows) {
        Bytes disk = Disk();
        PutMbr(disk, 0, {{0, 0xEE, 1, 199}});
        PutGptEntry(disk, 1024, 10, 29, u"K\u00F6ln");
        PutGptEntry(disk, 1152, 30, 49, u"a\x01\x85\u202E\xD800z");
        PutGptEntry(disk, 1280, 60, 69);
        PutGptHeader(disk, 512, {.Count = 4});
        row.Change(disk);
        EXPECT_EQ(Lines(disk), kWhole + row.Lines) << row.Name;
    }
}

TEST_F(PartitionTest, TheDecisionOnTheTypeIsExplained) {
    const auto hint = [this] { return Window->Form.lblSystemID.Hint.Get(); };
    Layout refused = Layout::Fat16(65520);
    const std::pair<Layout, std::string> rows[] = {
        {{}, "FAT12: 2,880 clusters (fewer than 4,080)"},
        {Layout::Fat16(8192), "FAT16: 8,192 clusters (4,080 to 65,519)"},
        {{.SectorsPerCluster = 4,
          .ReservedSectors = 4,
          .RootEntries = 512,
          .SmallSectors = 16384,
          .SectorsPerFat = 12},
         "Read as FAT16: 4,096 clusters counted over all sectors. The boot sector says FAT12, and "
         "by "
         "its data area (4,081 clusters) other systems read it as FAT12: files may "
         "come out wrong."},
        {{.SystemId = "        "},
         "Read as FAT12: 2,880 clusters counted over all sectors. The boot sector names no type, "
         "and "
         "by its data area (2,847 clusters) other systems read it as FAT12, too."},
        {{.SystemId = "FAT16   "},
         "Read as FAT12: 2,880 clusters counted over all sectors. The boot sector says FAT16, but "
         "by "
         "its data area (2,847 clusters) other systems read it as FAT12, too."},
        {{.SmallSectors = 4084},
         "Read as FAT16: 4,084 clusters counted over all sectors. The boot sector says FAT12, and "
         "by "
         "its data area (4,051 clusters) other systems read it as FAT12: files may "
         "come out wrong."},
        {{.SectorsPerFat = 0},
         "Read as FAT12: 2,880 clusters counted over all sectors. The boot sector says FAT12, and "
         "gives no size of a FAT in 16 bits, as on FAT32: files may come out wrong."},
        {refused,
         "Read as FAT32: 65,520 clusters counted over all sectors. The boot sector says FAT16, and "
         "by its data area (64,975 clusters) other systems read it as FAT16."},
        {{.SectorsPerCluster = 0},
         "Read as FAT32: the boot sector gives no sectors per cluster, so the previous count of "
         "65,520 clusters is kept. The boot sector says FAT12."}};
    for (const auto& [layout, text] : rows) {
        Open(Image(layout));
        EXPECT_EQ(hint(), text);
    }
    Run("menu Close");
    EXPECT_EQ(hint(), "");

    Bytes disk = Disk();
    PutMbr(disk, 0, {{0, 1, 10, 20}});
    Lines(disk);
    Run("file @/disk.img\nmenu Open");
    EXPECT_TRUE(hint().starts_with(
        "This file begins with a partition table: Options > Offset lists its volumes. Read as "))
        << hint();
    Run("menu Close\ninput 5120\nmenu Offset\nfile @/disk.img\nmenu Open");
    EXPECT_TRUE(hint().starts_with("FAT12: 100 clusters")) << hint();
}

}  // namespace
}  // namespace tessel
