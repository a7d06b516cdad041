#include "platform/host.h"
#include "reports/dumps.h"
#include "tests/fixture.h"
#include "volume/modDisks.h"

/// What the display shows: contents of files, and the volume's structures.
namespace tessel {
namespace {

/// Checks everything that a display returns about its lines against the whole text.
::testing::AssertionResult Agrees(const TextDisplay& display, const std::string& text) {
    std::string written;
    display.WriteTo(
        [&written](const PageText& part, bool) { written.append(part.begin(), part.end()); });
    const auto whole = Same(display.Text(), text);
    if (!whole || written != text) return whole ? Same(written, text) : whole;
    std::vector<std::int64_t> starts = {0}, ends;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' && text[i] != '\n') continue;
        ends.push_back(static_cast<std::int64_t>(i));
        if (text.compare(i, 2, "\r\n") == 0) ++i;
        starts.push_back(static_cast<std::int64_t>(i + 1));
    }
    const std::int64_t size = std::ssize(text), lines = std::ssize(starts);
    ends.push_back(size);
    const auto part = [&text](std::int64_t from, std::int64_t to) {
        return text.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
    };
    std::string wrong;
    if (display.LineCount() != lines || display.Size() != size) wrong += " counts";
    if (display.LineStart(lines) != size || display.LineAt(size + 5) != lines - 1) wrong += " end";
    // Every line and offset of a short text, and many of a long one.
    for (std::int64_t line = 0; line < lines; line += 1 + lines / 100) {
        const auto i = static_cast<std::size_t>(line);
        const std::int64_t to = line + 3 < lines ? starts[i + 3] : size;
        if (display.LineStart(line) != starts[i]) wrong += " LineStart " + std::to_string(line);
        if (display.LineEnd(line) != ends[i]) wrong += " LineEnd " + std::to_string(line);
        if (display.Lines(line, 3) != part(starts[i], to))
            wrong += " Lines " + std::to_string(line);
    }
    const std::int64_t step = size < 2000 ? 1 : size / 200;
    for (std::int64_t at = 0; at <= size; at += size - at < step ? 1 + step / 16 : step) {
        const auto next = std::upper_bound(starts.begin(), starts.end(), at);
        const bool right = display.LineAt(at) == next - starts.begin() - 1 &&
                           display.Text(at, 1) == part(at, std::min(size, at + 1)) &&
                           display.Text(at, 97) == part(at, std::min(size, at + 97));
        if (!right) wrong += " at " + std::to_string(at);
    }
    return wrong.empty() ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << wrong;
}

class ViewTest : public TesselTest {
  protected:
    /// Mounts an image and shows its first entry as text and as a dump.
    void ExpectShown(const Image& image, const std::string& bytes, const std::vector<int>& clusters,
                     std::size_t perCluster = 512) {
        Mount(image);
        ShowFileText(1, Text);
        EXPECT_TRUE(Agrees(Text, ContentText(bytes)));
        ShowFileDump(1, Text);
        EXPECT_TRUE(Agrees(Text, ChainDump(clusters, bytes, perCluster)));
    }
    TextDisplay Text;
};

TEST_F(ViewTest, ContentsOfEverySizeAreShown) {
    for (const int sectors : {1, 128}) {
        const std::size_t cluster = static_cast<std::size_t>(sectors) * 512;
        for (const std::size_t size :
             {std::size_t{0}, std::size_t{1}, std::size_t{15}, std::size_t{16}, std::size_t{20},
              cluster - 1, cluster, cluster + 1, 3 * cluster + 40}) {
            SCOPED_TRACE(size);
            Image image({.SectorsPerCluster = sectors, .SmallSectors = sectors == 1 ? 200 : 1000});
            image.AddFile(0, {.Name = "F"}, Noise(size));
            ExpectShown(image, Noise(size), {2, 3, 4, 5}, cluster);
        }
    }
}

TEST_F(ViewTest, FragmentsAndLoopsAreShown) {
    // Cluster numbers get a fifth digit at 10000, here in the middle of a run.
    const std::string noise = Noise(3400);
    Image image(Layout::Fat16(20000));
    const std::vector<int> wide = {9998, 9999, 10000, 10001, 5, 9997, 12000};
    image.AddFile(0, {.Name = "F"}, noise, wide);
    ExpectShown(image, noise, wide);
    // A loop back into the middle of a run, followed several times.
    Image loop(Layout::Fat16(20000));
    loop.AddFile(0, {.Name = "F", .Size = 5200}, noise, {9998, 9999, 10000, 10001});
    loop.Link({9998, 9999, 10000, 10001}, 9999);
    ExpectShown(loop, (noise.substr(0, 512) + Times(4, noise.substr(512, 1536))).substr(0, 5200),
                {9998, 9999, 10000, 10001, 9999, 10000, 10001, 9999, 10000, 10001, 9999});
    // The loop of a directory or of a file with a negative size: as many clusters as the volume
    // has.
    for (const int attributes : {0x10, 0x20}) {
        Image self({.RootEntries = 16, .SmallSectors = 37});
        self.AddFile(0, {.Name = "F", .Attributes = attributes, .Size = 0xF0000000},
                     noise.substr(0, 512), {5});
        self.SetFat(5, 5);
        ExpectShown(self, Times(37, noise.substr(0, 512)), std::vector<int>(37, 5));
    }
}

TEST_F(ViewTest, LineEndsAreCountedAcrossBoundaries) {
    // CR, LF and pairs, split by the boundaries of clusters, of blocks of 8 KiB and of reads.
    const std::string marks = "a\r\nbc\r\r\nd\n\r\n\n\re\tf\x01\r";
    std::string dense;
    for (std::size_t i = 0; dense.size() < 70000; ++i) dense += marks.substr(i % marks.size());
    const std::string pairs = std::string(8191, 'x') + "\r\n" + std::string(8190, 'y') + "\r" +
                              std::string(8191, '\x80') + "\r\n\r\n\r";
    for (const std::string& bytes : {dense, pairs, "\r\n" + pairs, "\n" + dense, std::string("\r"),
                                     std::string(20000, '\r'), std::string(20001, '\n')}) {
        Image image({.SmallSectors = 200});
        image.AddFile(0, {.Name = "F"}, bytes);
        Mount(image);
        ShowFileText(1, Text);
        EXPECT_TRUE(Agrees(Text, ContentText(bytes))) << bytes.substr(0, 3);
    }
    // Literal text, in pieces that split a pair.
    Text.Clear();
    EXPECT_TRUE(Agrees(Text, ""));
    for (std::size_t i = 0, whole = 0; i < 100; i += 1 + i % 3) {
        Text.Append(dense.substr(i, 1 + i % 3));
        whole += 1 + i % 3;
        EXPECT_TRUE(Agrees(Text, dense.substr(0, whole))) << i;
    }
}

TEST_F(ViewTest, StopAndReadErrorsEndAView) {
    Image image;
    image.AddFile(0, {.Name = "F"}, Noise(600000));
    std::vector<int> clusters;
    for (int c = 2; c < 1200; ++c) clusters.push_back(c);
    for (const bool dump : {false, true}) {
        const auto expected = [&](std::size_t size) {
            return dump ? ChainDump(clusters, Noise(size)) : ContentText(Noise(size));
        };
        const auto show = [&] { dump ? ShowFileDump(1, Text) : ShowFileText(1, Text); };
        Mount(image);
        TheHost.DoEvents = [] { StopRequested = true; };
        show();
        EXPECT_TRUE(Agrees(Text, expected(512)));
        show();
        EXPECT_EQ(Text.Size(), 0) << "STOP before the first byte";
        StopRequested = false;
        TheHost.DoEvents = [] {};
        for (const std::size_t good : {0U, 7U, 512U, 300001U}) {
            FailReads(At("mounted.img"), image.At(2) + good, image.At(2) + good + 1);
            show();
            StopFailingReads();
            EXPECT_TRUE(Agrees(Text, expected(good))) << good;
        }
        // The image is truncated, and its medium fails, while it is shown.
        show();
        const std::int64_t size = Text.Size(), lines = Text.LineCount();
        std::filesystem::resize_file(At("mounted.img"), image.At(2) + 100000);
        FailReads(At("mounted.img"), image.At(2) + 20000);
        EXPECT_EQ(std::ssize(Text.Text()), size);
        EXPECT_TRUE(Same(Text.Text(0, 9000), expected(9000).substr(0, 9000)));
        for (std::int64_t line = 0; line < lines; line += 100) {
            EXPECT_LE(Text.LineStart(line), Text.LineEnd(line));
            EXPECT_LE(Text.LineEnd(line), size);
        }
        for (std::int64_t at = 0; at <= size; at += 5000) EXPECT_LT(Text.LineAt(at), lines);
        StopFailingReads();
    }
}

TEST_F(ViewTest, AHugeClaimCostsNeitherTimeNorMemory) {
    Image image(Layout::Fat16(20000));
    image.AddFile(0, {.Name = "F", .Size = 0x7FFFFFFF}, Noise(1024), {9999, 10000});
    image.SetFat(10000, 9999);
    image.Add(0, {.Name = "G", .Cluster = 65000, .Size = 0x7FFFFFFF});
    Mount(image);
    int calls = 0;
    TheHost.DoEvents = [&calls] { StopRequested = ++calls == 3; };
    ShowFileDump(1, Text);
    EXPECT_EQ(calls, 3);
    const std::int64_t clusters = (Text.LineCount() - 1) / 32;
    EXPECT_LT(clusters, 0x7FFFFFFF / 512);
    EXPECT_EQ(Text.Size(), (clusters + 1) / 2 * 32 * 95 + clusters / 2 * 32 * 96);
    EXPECT_EQ(Text.Lines(Text.LineCount() - 2, 1).substr(0, 28),
              clusters % 2 == 1 ? "270F-000001F0 (9999-0000496)" : "2710-000001F0 (10000-0000496");
    StopRequested = false;
    ShowFileText(2, Text);
    EXPECT_TRUE(Same(Text.Text(), Times(512, "<00>")))
        << "one cluster past the volume, and no more";
}

TEST_F(ViewTest, Utf16UnitsAreCountedInCharactersOfEveryWidth) {
    const std::string characters = "a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80";  // 10 bytes, 5 units
    for (int i = 0; i < 3000; ++i) Text.Append(characters);
    std::string wrong;
    for (std::int64_t i = 0; i < 3000; ++i) {
        for (const auto& [offset, unit] : {std::pair{0, 0}, {1, 1}, {3, 2}, {6, 3}}) {
            if (Text.Utf16Before(10 * i + offset) == 5 * i + unit &&
                Text.OffsetOfUtf16(5 * i + unit) == 10 * i + offset)
                continue;
            wrong += " " + std::to_string(10 * i + offset);
        }
    }
    EXPECT_EQ(wrong, "");
    EXPECT_EQ(Text.OffsetOfUtf16(4), 6) << "the second half of a surrogate pair";
    EXPECT_EQ(Text.Utf16Before(Text.Size() + 1), 15000);
    EXPECT_EQ(Text.OffsetOfUtf16(15001), Text.Size());
}

TEST_F(ViewTest, TheWholeRootDirectoryIsDumped) {
    for (const int entries : {0, 1, 4096}) {
        Layout layout = Layout::Fat16(6000);
        layout.RootEntries = entries;
        Image image(layout);
        image.Poke(49 * 512, Noise(512));
        Mount(image);
        DumpRootDirectory(Text);
        EXPECT_TRUE(Agrees(
            Text, AreaDump(" Raw Root Directory", {RootDirBytes.begin(), RootDirBytes.end()})));
    }
}

TEST_F(ViewTest, TheBootSectorIsShownFieldByField) {
    Mount(Image());
    // Every byte is different, so that no two fields can be mixed up; large values are shown in
    // full.
    for (std::size_t i = 0; i < 62; ++i) BootSectorBytes[i] = static_cast<Byte>(0xC0 + i);
    ParseBootSector();
    EXPECT_EQ(BootSectorInfo(),
              " Boot Sector Info\r\n"
              "\r\n"
              "  OEM ID              = ........    ( C3 C4 C5 C6 C7 C8 C9 CA )\r\n"
              "  Bytes per Sector    = CCCB (52427)\r\n"
              "  Sectors per Cluster = CD (205)\r\n"
              "  Reserved Sectors    = CFCE (53198)\r\n"
              "  Number of FATS      = D0 (208)\r\n"
              "  Root Entries        = D2D1 (53969)\r\n"
              "  Small Sectors       = D4D3 (54483)\r\n"
              "  Media Type          = D5 (213)\r\n"
              "  Sectors per FAT     = D7D6 (55254)\r\n"
              "  Sectors per Track   = D9D8 (55768)\r\n"
              "  Number of Heads     = DBDA (56282)\r\n"
              "  Hidden Sectors      = DFDEDDDC (-539042340)\r\n"
              "  Large Sectors       = E3E2E1E0 (-471670304)\r\n"
              "  Phsical Disk Number = E4 (228)\r\n"
              "  Scan / Surface (CH) = E5 (229)\r\n"
              "  Signature           = E6 (230)\r\n"
              "  Vol Serial Number   = EAE9E8E7 (-353769241)\r\n"
              "  Volume Label        = ........... ( EB EC ED EE EF F0 F1 F2 F3 F4 F5 )\r\n"
              "  System ID           = ........    ( F6 F7 F8 F9 FA FB FC FD )\r\n"
              "  Signature           = AA55\r\n"
              "\r\n");
}

TEST_F(ViewTest, TheFatIsATableOfEntries) {
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
    // The length of the image, the number of clusters that it claims, and what is shown.
    const std::string first = table.substr(0, 94);
    const std::tuple<std::size_t, Long, std::string> rows[] = {
        {512 + 24, 2847, first + " FAT ends after 16 of 2847 entries\r\n"},
        {512 + 26, 17, first + "0010 (0016) 0011 "},
        {512 + 26, 18, first + "0010 (0016) 0011 \r\n FAT ends after 17 of 18 entries\r\n"},
        {512, 2847, " FAT ends after 0 of 2847 entries\r\n"},
        {SIZE_MAX, 0, ""},
        {SIZE_MAX, -5, ""}};
    for (const auto& [cut, clusters, shown] : rows) {
        Mount(image, cut);
        Drives[1].ClusterCount = clusters;
        EXPECT_EQ(DumpFat0(), shown) << cut;
    }
}

}  // namespace
}  // namespace tessel
