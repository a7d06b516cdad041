#include "platform/numberedFiles.h"
#include "tests/fixture.h"
#include "volume/clusterChain.h"
#include "volume/modDisks.h"

/// The volume's state: geometry, layout, areas, chains.
namespace tessel {
namespace {

using VolumeTest = TesselTest;

TEST_F(VolumeTest, TheGeometryFollowsTheLength) {
    // Length, tracks, heads, sectors per track.
    const std::int64_t rows[][4] = {
        {0, 80, 2, 36},       {163840, 40, 1, 8},   {184320, 40, 1, 9},     {327680, 40, 2, 8},
        {368640, 40, 2, 9},   {737280, 80, 2, 9},   {1228800, 80, 2, 15},   {1474560, 80, 2, 18},
        {1720320, 80, 2, 21}, {1474561, 80, 2, 18}, {3221225472, 80, 2, 18}};
    Write("file", std::string());
    DriveRecord& d = Drives[2];
    d.FileNumber = 7;
    for (const auto& [length, tracks, heads, sectors] : rows) {
        std::filesystem::resize_file(At("file"), static_cast<std::uintmax_t>(length));
        OpenForReading(7, At("file"));
        d.SectorSize = d.LogicalSectorSize = 1;
        SetDriveGeometry(2);
        CloseFile(7);
        EXPECT_TRUE(d.Tracks == tracks && d.Heads == heads && d.SectorsPerTrack == sectors)
            << length;
        EXPECT_TRUE(d.SectorSize == 512 && d.LogicalSectorSize == 512);
    }
    EXPECT_EQ(ErrorOf([] { SetDriveGeometry(4); }) + ErrorOf([] { SetDriveGeometry(-1); }), 18);
    // Nothing can be read past 2 GB, even if the file is longer.
    OpenForReading(7, At("file"));
    Byte bytes[4] = {1, 1, 1, 1};
    const std::pair<std::int64_t, int> reads[] = {
        {2147483643, 0}, {2147483644, 57}, {2147483647, 6}, {-1, 6}};
    for (const auto& [at, error] : reads) {
        EXPECT_EQ(ErrorOf([&, from = at] { ReadFile(7, from, bytes); }), error) << at;
    }
}

TEST_F(VolumeTest, TheLayoutIsDerivedFromTheBootSector) {
    // Total sectors, clusters, and the first sectors of the second FAT, the root and the data area.
    const std::pair<std::vector<Long>, Layout> rows[] = {
        {{2880, 2880, 10, 19, 33}, {.BytesPerSector = 1024}},
        {{2880, 2880, 10, 19, 19}, {.RootEntries = 10}},
        {{2880, 411, 10, 19, 33}, {.SectorsPerCluster = 7, .LargeSectors = 9}},
        {{65536, 65536, 10, 19, 33}, {.SmallSectors = 0, .LargeSectors = 65536}},
        {{2880, 2880, 10, 1, 15}, {.NumberOfFats = 0}},
        {{2880, 2880, 131070, 16776960, 16776974},
         {.ReservedSectors = 65535, .NumberOfFats = 255, .SectorsPerFat = 65535}},
        // What cannot be computed keeps the value of the previous volume.
        {{1440, 2880, 10, 19, 33},
         {.BytesPerSector = 65535,
          .SectorsPerCluster = 0,
          .SmallSectors = 1440,
          .NumberOfHeads = 40000}}};
    for (const auto& [derived, layout] : rows) {
        std::copy_n(Image(layout).Volume.begin(), 512, BootSectorBytes.begin());
        ParseBootSector();
        const DriveRecord& d = Drives[1];
        EXPECT_EQ((std::vector{d.TotalSectors, d.ClusterCount, d.Fat1Sector, d.RootDirSector,
                               d.DataSector}),
                  derived);
        EXPECT_TRUE(d.Fat0Sector == layout.ReservedSectors && d.SectorsPerTrack == 18);
        EXPECT_EQ(d.Heads, 2);
        EXPECT_EQ(d.SectorSize, layout.BytesPerSector == 1024 ? 1024 : 512);
        EXPECT_EQ(d.LogicalSectorSize, d.SectorSize);
        Drives[1].SectorSize = Drives[1].LogicalSectorSize = 512;
    }
    // By the cluster count and the system identifier: type, caption, colour.
    const std::tuple<Long, const char*, Long, const char*> types[] = {
        {4079, "FAT12   ", 12, "kept"},   {4080, "FAT12   ", 16, "Fat16"},
        {65519, "fat16   ", 16, "kept"},  {65520, " FAT32  ", 32, "kept"},
        {65520, "FAT16   ", 32, "Fat32"}, {-1, "", 12, "Fat12"}};
    for (const auto& [clusters, systemId, bits, caption] : types) {
        Label label;
        label.Caption = "kept";
        BootSector.SystemId = systemId;
        SetFatType(FatTypeOf(clusters), label);
        SetFatType(11, label);
        EXPECT_EQ(FatType, bits) << clusters;
        EXPECT_EQ(FatEndMark, bits == 12 ? 4095 : bits == 16 ? 65535 : -1);
        EXPECT_EQ(label.Caption.Get(), caption) << systemId;
        EXPECT_EQ(label.Colour == TextColour::kBlue, label.Caption.Get() != "kept");
    }
}

TEST_F(VolumeTest, SectorsAndAreasAreAddressed) {
    Image image({.PartitionOffset = 32256});
    image.Poke(7 * 512, "sector seven");
    PartitionOffset = 32256;
    Mount(image);
    EXPECT_EQ(SectorToAddress(37), 18944);
    EXPECT_TRUE(DiskAddress.Sector == 1 && DiskAddress.Track == 1 && DiskAddress.Head == 0);
    EXPECT_TRUE(ReadSector(7));
    EXPECT_EQ(GetString(SectorBuffer, 0, 12), "sector seven");
    EXPECT_EQ(ClusterToSector(2) + ClusterToSector(0), 33 + 31);
    EXPECT_EQ(ClusterOffset(2, 5), 32256 + 16896 + 5);
    EXPECT_EQ(ErrorOf([] { SectorToAddress(4194304); }), 6);
    EXPECT_EQ(SectorToAddress(4194303), 2147483136);
    EXPECT_FALSE(ReadSector(4194303)) << "past 2 GB with the offset";
    FailReads(At("mounted.img"), 40000, 40001);
    EXPECT_FALSE(ReadSector((40000 - 32256) / 512));
    StopFailingReads();
    Drives[1].SectorsPerTrack = 0;
    EXPECT_EQ(SectorToAddress(700000), 358400000);
    EXPECT_EQ(DiskAddress.Track + DiskAddress.Head + DiskAddress.Sector, 0);
    Drives[1].SectorsPerTrack = Drives[1].Heads = 1;
    SectorToAddress(700);
    EXPECT_EQ(DiskAddress.Track, 700 & 255);
    PartitionOffset = 0;
    // Sectors of 1024 bytes move the areas, but not the addresses of sectors and entries.
    Image large({.BytesPerSector = 1024});
    large.Poke(1024, "\x11\x22\x33");
    large.Poke(19 * 1024, "the root");
    large.Poke(19 * 512, "entry  zero");
    Mount(large);
    EXPECT_EQ(GetFat12Entry(Fat0Bytes, 0) + GetFat12Entry(Fat0Bytes, 1), 0x211 + 0x332);
    EXPECT_EQ(GetString(RootDirBytes, 0, 8), "the root");
    EXPECT_EQ(EntryFileName(1), "entry  z.ero");
    // Areas of any size: a layout, the length of the image, the bytes of FAT and root, the error.
    using Row = std::tuple<Layout, std::size_t, std::size_t, std::size_t, int>;
    const Row rows[] = {{{}, SIZE_MAX, 4608, 7168, 0},
                        {{}, 612, 100, 7168, 0},
                        {{}, 512, 0, 7168, 0},
                        {{.BytesPerSector = 0, .RootEntries = 0}, SIZE_MAX, 0, 0, 0},
                        {{.BytesPerSector = 65535, .SectorsPerFat = 65535}, SIZE_MAX, 0, 7168, 6},
                        {{.SectorsPerFat = 65535}, SIZE_MAX, 131072, 7168, 0}};
    for (const auto& [layout, cut, fat, root, error] : rows) {
        EXPECT_EQ(ErrorOf([&, &l = layout, at = cut] { Mount(Image(l), at); }), error);
        EXPECT_EQ(ErrorOf([] { ReadFat0(); }), error);
        EXPECT_EQ(ErrorOf([] { ReadFat1(); }), error);
        EXPECT_EQ(Fat0Bytes.size(), fat);
        EXPECT_EQ(RootDirBytes.size(), root);
    }
}

TEST_F(VolumeTest, ChainsFollowTheFatEntries) {
    const Byte fat12[] = {0xF0, 0xFF, 0xFF, 0x03, 0x40, 0x00, 0x05, 0xF0, 0xFF};
    for (std::size_t size = 0; size <= 9; ++size) {
        for (const Long bits : {12, 16}) {
            const ByteBuffer fat = ByteBuffer(fat12).first(size);
            const auto get = bits == 12 ? GetFat12Entry : GetFat16Entry;
            const Long count = WholeFatEntries(fat, bits);
            EXPECT_EQ(ErrorOf([&] { get(fat, count - 1); }), count > 0 ? 0 : 9) << size;
            EXPECT_EQ(ErrorOf([&] { get(fat, count); }), 9) << size << " bytes, " << bits;
        }
    }

    struct Row {
        const char* Name;
        int Bits;
        std::vector<int> Links;  // cluster 2, and the entry of each cluster in turn
        std::vector<Long> Clusters;
    };
    const Row rows[] = {{"end mark", 12, {2, 3, 4, 5, 0xFFF}, {2, 3, 4, 5}},
                        {"FF8", 12, {2, 3, 0xFF8}, {2, 3, 4088}},
                        {"the count itself", 12, {2, 2880}, {2, 2880}},
                        {"below the count", 12, {2, 2879, 7, 0xFFF}, {2, 2879, 7}},
                        {"free entry", 12, {2, 0}, {2, 0, 4080}},
                        {"loop in itself", 12, {2, 2}, {2, 2, 2, 2, 2, 2}},
                        {"loop to the middle", 12, {2, 3, 4, 5, 4}, {2, 3, 4, 5, 4, 5}},
                        {"16 end mark", 16, {2, 3, 0xFFFF}, {2, 3}},
                        {"FFF8", 16, {2, 3, 0xFFF8}, {2, 3, 65528}},
                        {"FFF", 16, {2, 0xFFF, 0xFFFF}, {2, 4095}},
                        {"large numbers", 16, {2, 16384, 17000, 0xFFFF}, {2, 16384, 17000}}};
    const auto clusters = [](Long first) {
        const ClusterChain chain(first);
        std::vector<Long> visited;
        for (std::int64_t at = 0; visited.size() < 6; at += chain.BytesPerCluster()) {
            if (!chain.LoopTarget() && at >= chain.DistinctBytes()) break;
            visited.push_back(chain.ExtentAt(at).Cluster);
        }
        return visited;
    };
    for (const Row& row : rows) {
        Image image(row.Bits == 12 ? Layout{} : Layout::Fat16(20000));
        image.Link({row.Links.begin(), row.Links.end() - 1}, row.Links.back());
        Mount(image);
        EXPECT_EQ(clusters(2), row.Clusters) << row.Name;
    }
    EXPECT_EQ(NextCluster(20000), 65535) << "the cluster count itself has no entry";
    EXPECT_EQ(clusters(65535), std::vector<Long>{65535});
    Image image;
    image.Link({2, 300, 301, 5});
    Mount(image, 512 + 300 * 3 / 2 + 1);
    EXPECT_EQ(clusters(2), (std::vector<Long>{2, 300})) << "the file ends within entry 300";
    FatType = 32;
    EXPECT_EQ(NextCluster(2), 0);
}

}  // namespace
}  // namespace tessel
