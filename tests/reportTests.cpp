#include "reports/dumps.h"
#include "tests/fixture.h"
#include "volume/modDisks.h"

/// The volume's structures as text.
namespace tessel {
namespace {

class ReportTest : public TesselTest {};

TEST_F(ReportTest, TheBootSectorIsToldFieldByField) {
    Mount(Image());
    const std::string report =
        " Boot Sector Info\r\n"
        "\r\n"
        "  OEM ID              = MSDOS5.0    ( 4D 53 44 4F 53 35 2E 30 )\r\n"
        "  Bytes per Sector    = 0200 (512)\r\n"
        "  Sectors per Cluster = 01 (1)\r\n"
        "  Reserved Sectors    = 0001 (1)\r\n"
        "  Number of FATS      = 02 (2)\r\n"
        "  Root Entries        = 00E0 (224)\r\n"
        "  Small Sectors       = 0B40 (2880)\r\n"
        "  Media Type          = F0 (240)\r\n"
        "  Sectors per FAT     = 0009 (9)\r\n"
        "  Sectors per Track   = 0012 (18)\r\n"
        "  Number of Heads     = 0002 (2)\r\n"
        "  Hidden Sectors      = 00000000 (0)\r\n"
        "  Large Sectors       = 00000000 (0)\r\n"
        "  Phsical Disk Number = 00 (0)\r\n"
        "  Scan / Surface (CH) = 00 (0)\r\n"
        "  Signature           = 29 (41)\r\n"
        "  Vol Serial Number   = 9C3A61E4 (-1673895452)\r\n"
        "  Volume Label        = NO NAME     ( 4E 4F 20 4E 41 4D 45 20 20 20 20 )\r\n"
        "  System ID           = FAT12       ( 46 41 54 31 32 20 20 20 )\r\n"
        "  Signature           = AA55\r\n"
        "\r\n";
    EXPECT_EQ(BootSectorInfo(), report);
    // Every byte another one: no two fields are mixed up, and large values are told whole.
    for (std::size_t i = 0; i < 62; ++i) BootSectorBytes[i] = static_cast<Byte>(0xC0 + i);
    ParseBootSector();
    std::string values;
    std::istringstream lines(BootSectorInfo());
    for (std::string line; std::getline(lines, line);) {
        if (line.size() > 24) values += line.substr(24, line.size() - 25) + ";";
    }
    EXPECT_EQ(values,
              "........    ( C3 C4 C5 C6 C7 C8 C9 CA );CCCB (52427);CD (205);CFCE (53198);D0 (208);"
              "D2D1 (53969);D4D3 (54483);D5 (213);D7D6 (55254);D9D8 (55768);DBDA (56282);"
              "DFDEDDDC (-539042340);E3E2E1E0 (-471670304);E4 (228);E5 (229);E6 (230);"
              "EAE9E8E7 (-353769241);........... ( EB EC ED EE EF F0 F1 F2 F3 F4 F5 );"
              "........    ( F6 F7 F8 F9 FA FB FC FD );AA55;");
}

TEST_F(ReportTest, TheBootSectorIsDumpedInRows) {
    Mount(Image());
    const std::string boot = DumpBootSector();
    EXPECT_EQ(boot.substr(0, 98),
              " Raw Boot Sector 0\r\n\r\n"
              "00000000  EB 3C 90 4D 53 44 4F 53 35 2E 30 00 02 01 01 00 .<.MSDOS5.0.....\r\n");
    EXPECT_TRUE(Same(
        boot, AreaDump(" Raw Boot Sector 0", {BootSectorBytes.begin(), BootSectorBytes.end()})));
}

TEST_F(ReportTest, TheFatIsATableOfEntries) {
    Image image({.SmallSectors = 2847});
    std::vector<int> chain;
    for (int c = 2; c <= 20; ++c) chain.push_back(c);
    image.Link(chain);
    Mount(image);
    const std::string table = DumpFat0();
    EXPECT_EQ(table.substr(0, 2 * 94),
              "0000 (0000) 0FF0 0FFF 0003 0004 0005 0006 0007 0008 0009 000A 000B 000C 000D 000E "
              "000F 0010 \r\n"
              "0010 (0016) 0011 0012 0013 0014 0FFF 0000 0000 0000 0000 0000 0000 0000 0000 0000 "
              "0000 0000 \r\n");
    EXPECT_EQ(table.substr(177U * 94), "0B10 (2832) " + Times(15, "0000 "));
    Image large(Layout::Fat16(20000));
    large.Link({2, 16, 19999}, 0xFFF7);
    Mount(large);
    const std::string wide = DumpFat0();
    EXPECT_EQ(wide.substr(0, 29), "0000 (00000) FFF8 FFFF 0010 0");
    EXPECT_EQ(wide.substr(95, 18), "0010 (00016) 4E1F ");
    EXPECT_EQ(wide.substr(1249 * 95), "4E10 (19984) " + Times(15, "0000 ") + "FFF7 \r\n");
    struct Row {
        std::size_t Cut;
        Long Clusters;
        std::string Shown;
    };
    const std::string first = table.substr(0, 94);
    const Row rows[] = {
        {512 + 24, 2847, first + " FAT ends after 16 of 2847 entries\r\n"},
        {512 + 26, 17, first + "0010 (0016) 0011 "},
        {512 + 26, 18, first + "0010 (0016) 0011 \r\n FAT ends after 17 of 18 entries\r\n"},
        {512, 2847, " FAT ends after 0 of 2847 entries\r\n"},
        {SIZE_MAX, 0, ""},
        {SIZE_MAX, -5, ""}};
    for (const Row& row : rows) {
        Mount(image, row.Cut);
        Drives[1].ClusterCount = row.Clusters;
        EXPECT_EQ(DumpFat0(), row.Shown) << row.Cut;
    }
}

}  // namespace
}  // namespace tessel
