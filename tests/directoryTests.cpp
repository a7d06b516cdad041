#include "reports/directoryLines.h"
#include "tests/fixture.h"
#include "volume/modDisks.h"

/// Directory rows, long names, and the lines that show them.
namespace tessel {
namespace {

using DirectoryTest = TesselTest;

void LoadSub(Long cluster) {
    ClearDirEntries();
    LoadSubDirectory(cluster);
    AttachLongNames();
}

TEST_F(DirectoryTest, EveryEntryBecomesARowAndALine) {
    Image image;
    image.Add(0, {.Name = "MYDISK     ", .Attributes = 8, .Cluster = 7, .Size = 7});
    image.Add(0, {.Name = "README.TXT", .Attributes = 0x27, .Cluster = 2, .Size = 1234});
    image.Add(0, {.Name = "\xE5.X", .Cluster = 3, .Size = 0xFFFFFFFF});
    image.Add(0, {.Name = "GAMES",
                  .LongName = u"My games",
                  .Attributes = 0x11,
                  .Cluster = 12345,
                  .Date = 0,
                  .Time = 0});
    image.Add(0, {.Name = "BIG", .Size = 12345678, .Date = 0xFFFF, .Time = 0xFFFF});
    image.Add(0, {.Name = "NEG.X", .Size = 0xFFFFFFFB});
    image.AddRaw(0, images::Bytes(32));
    image.Add(0, {.Name = "BEHIND"});
    Mount(image);
    EXPECT_EQ(DirEntryCount, 9);
    EXPECT_EQ(CountFiles(), 3);
    EXPECT_EQ(EntryFileName(2) + "|" + EntryFileName(6), "README.TXT|BIG");
    for (const Long row : {-1, 1024}) EXPECT_EQ(ErrorOf([row] { IsDeleted(row); }), 9);
    const std::string dates = " C- 03/15/1998 14:22:06 M- 03/15/1998 14:22:06 A- 03/15/1998";
    EXPECT_EQ(DirectoryText(),
              "[.           ] \r\n"
              "      C- 00/00/1980 00:00:00 M- 00/00/1980 00:00:00 A- 00/00/1980 CL-0000\r\n"
              "{MYDISK     }  \r\n     " +
                  dates +
                  "\r\n"
                  " README  .TXT  \r\n RSHA" +
                  dates +
                  " CL-0002 SZ (0001234)\r\n"
                  "[GAMES   .   ] My games\r\n"
                  " R    C- 00/00/1980 00:00:00 M- 00/00/1980 00:00:00 A- 00/00/1980 CL-12345\r\n"
                  " BIG     .     \r\n"
                  "    A C- 15/31/2107 31:63:62 M- 15/31/2107 31:63:62 A- 15/31/2107 CL-0000 "
                  "SZ (12345678)\r\n"
                  " NEG     .X    \r\n    A" +
                  dates + " CL-0000 SZ (-0000005)\r\n");
}

TEST_F(DirectoryTest, TheAttributesDetermineTheKind) {
    // Attributes with the reserved byte, the kinds, the line in the list, the letters.
    using Row = std::tuple<int, std::string, std::string, std::string>;
    const char *label = "{NAME    EXT} ", *directory = "[NAME    .EXT]", *file = " NAME    .EXT ";
    const Row rows[] = {{0x08, "label", label, "    "},
                        {0x28, "file", file, "   A"},
                        {0x108, "file", file, "    "},
                        {0x30, "directory", directory, "   A"},
                        {0x18, "directory", directory, "    "},
                        {0x1F, "directory long", directory, "RSH "},
                        {0x2F, "long", "", "RSHA"},
                        {0x01, "file", file, "R   "},
                        {0x02, "file", file, "  H "},
                        {0x04, "file", file, " S  "},
                        {0xFFC0, "file", file, "    "}};
    Image image;
    for (const Row& row : rows) {
        image.Add(0, {.Name = "NAME.EXT", .Attributes = std::get<int>(row)});
    }
    Mount(image);
    Long i = 0;
    for (const auto& [attributes, kinds, line, letters] : rows) {
        ++i;
        const std::string kind = std::string(IsVolumeLabel(i) ? " label" : "") +
                                 (IsDirectory(i) ? " directory" : "") +
                                 (IsLongName(i) ? " long" : "") + (IsFile(i) ? " file" : "");
        EXPECT_EQ(kind.substr(1), kinds) << attributes;
        EXPECT_EQ(ListLine(i, false), line);
        EXPECT_EQ(AttrText(DirEntries(i).Attributes), letters);
    }
}

TEST_F(DirectoryTest, LongNamesAreJoined) {
    using Entries = std::vector<images::Bytes>;
    const auto part = [](int sequence, char16_t text, int attributes = 0x0F) {
        images::Bytes bytes = images::LongNameEntries(std::u16string(1, text))[0];
        bytes[0] = static_cast<std::uint8_t>(sequence);
        bytes[11] = static_cast<std::uint8_t>(attributes);
        return bytes;
    };
    const images::Bytes file = images::EntryBytes({.Name = "F"});
    const images::Bytes label = images::EntryBytes({.Name = "L", .Attributes = 8});
    const images::Bytes gone = images::EntryBytes({.Name = "\xE5X"});
    const auto named = [&file](const std::u16string& name) {
        Entries entries = images::LongNameEntries(name);
        entries.push_back(file);
        return entries;
    };
    const std::pair<Entries, std::string> rows[] = {
        {{file}, "|"},
        {{part(2, 'b'), part(1, 'a'), file, file}, "ab||"},
        {{part(0x41, 'o'), part(0x42, 'b'), part(1, 'a'), file}, "ab|"},
        {{part(0x41, 'a'), label, file}, "a|"},
        {{part(0x41, 'a'), gone, file}, "a|"},
        {{part(0xE5, 'x'), part(0x41, 'a'), file}, "a|"},
        {{part(0x41, 'a'), part(9, 'b'), file}, "ba|"},
        {{part(0x41, 'a'), part(0x01, 'b', 0x1F)}, "ba|"},
        {named(std::u16string(13, 'x')), std::string(13, 'x') + "|"},
        {named(std::u16string(255, 'y')), std::string(255, 'y') + "|"},
        {named(u"a pair split\xD83D\xDE00 here"), "a pair split\U0001F600 here|"},
        {named(std::u16string(u"zero\0\xFFFFinside", 12)), "zeroinside|"}};
    for (const auto& [entries, names] : rows) {
        Image image({.SmallSectors = 60});
        for (const images::Bytes& entry : entries) image.AddRaw(0, entry);
        Mount(image);
        std::string joined;
        for (Long row = 1; DirEntries(row).InUse; ++row) {
            const bool listed = (IsFile(row) || IsDirectory(row)) && !IsDeleted(row);
            if (listed) joined += LongNameText(row) + "|";
        }
        EXPECT_EQ(joined, names);
    }
}

TEST_F(DirectoryTest, SubdirectoriesAreReadAlongTheirChain) {
    Image image;
    const int sub = image.AddDirectory(0, {.Name = "SUB"});
    for (int i = 0; i < 14; ++i) image.Add(sub, {.Name = "A" + std::to_string(i)});
    image.AddFile(0, {.Name = "BETWEEN"}, "x");
    for (int i = 14; i < 30; ++i) image.Add(sub, {.Name = "A" + std::to_string(i)});
    Mount(image);
    LoadSub(2);
    EXPECT_EQ(DirEntryCount, 32);
    EXPECT_EQ(CountFiles(), 30);
    EXPECT_EQ(EntryFileName(31), "A29");
    // The end mark in a first cluster: the other clusters still become rows, which are never shown.
    Image early = image;
    early.Poke(early.At(2) + 5 * 32, std::string(1, '\0'));
    Mount(early);
    LoadSub(2);
    EXPECT_EQ(DirEntryCount, 6 + 16);
    EXPECT_EQ(CountFiles(), 3);
    EXPECT_EQ(DirectoryText().find("A14"), std::string::npos);
    for (const Long cluster : {-1, 65536}) EXPECT_EQ(ErrorOf([&] { LoadSub(cluster); }), 9);
    image.SetFat(4, 2);
    Mount(image);
    LoadSub(2);
    EXPECT_EQ(DirEntryCount, 2880 * 16) << "a loop ends after as many clusters as the volume has";
    EXPECT_EQ(EntryFileName(46079), "A29");
    // Clusters so large that the address of FFF8, taken as a cluster, is out of range.
    Image marked(Layout::Fat16(60, 128));
    marked.Poke(19, std::string("\0\0", 2));
    marked.Poke(32, std::string("\x40\x4B\x4C\0", 4));  // 5000000 sectors
    marked.AddDirectory(0, {.Name = "SUB"});
    marked.SetFat(2, 0xFFF8);
    Mount(marked);
    EXPECT_EQ(FatType, 16);
    EXPECT_EQ(ErrorOf([] { LoadSub(2); }), 0);
    EXPECT_EQ(DirEntryCount, 3);
    // The maximum number of rows.
    Layout layout = Layout::Fat16(8000);
    layout.RootEntries = 65535;
    Image large(layout);
    for (int i = 0; i < 65535; ++i) large.Add(0, {.Name = std::to_string(i)});
    Mount(large);
    EXPECT_EQ(CountFiles(), 65535);
    EXPECT_EQ(EntryFileName(65535), "65534");
    LoadRootDirectory();
    EXPECT_FALSE(ReadDirEntry(0, 0)) << "a full table takes no more";
    EXPECT_EQ(DirEntryCount, 65536);
    ClearDirEntries();
    EXPECT_EQ(DirEntries.Rows(), 1024);
}

}  // namespace
}  // namespace tessel
