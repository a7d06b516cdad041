#include "tests/fixture.h"
#include "volume/modDisks.h"

/// Directories, display modes, damaged volumes in the window.
namespace tessel {
namespace {

const std::string kDates = " C- 03/15/1998 14:22:06 M- 03/15/1998 14:22:06 A- 03/15/1998";

TEST_F(WindowTest, DirectoriesAreEnteredAndLeft) {
    Open(SampleImage());
    EXPECT_EQ(Run("choose Dump\ndouble 2\nshow list\nshow display"),
              ">0\t[.           ]\n1\t[..          ]\n2\t INNER   .TXT \n3\t EMPTY   .    \n"
              "4\t[DEEP    .D  ]\n[.           ] \r\n     " +
                  kDates + " CL-0003")
        << "the mode is File info again, and the first line is shown";
    // A step, what it prints, and the resulting directory, level and number of files.
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"double 0", "", "SUBFOL~1 1 2"},
        {"double 2", "", "SUBFOL~1 1 2"},
        {"double 4", "", "DEEP.D 2 0"},
        {"menu Save Directory", "disabled Save Directory\n", "DEEP.D 2 0"},
        {"double 1", "", "SUBFOL~1 1 2"},
        {"double 1", "", " 0 2"},
        {"double 0", "", " 0 2"}};
    for (const auto& [step, printed, where] : rows) {
        EXPECT_EQ(Run(step), printed) << step;
        const formTessel& form = Window->Form;
        EXPECT_EQ(form.lblDirectory.Caption.Get() + " " + std::to_string(form.DirDepth) + " " +
                      std::to_string(form.FileCount),
                  where)
            << step;
    }
}

TEST_F(WindowTest, AnEntryIsShownInTheChosenMode) {
    const Image image = SampleImage();
    Open(image);
    const auto bytes = [&image](std::size_t from, std::size_t count) {
        const auto begin = image.Volume.begin() + static_cast<std::ptrdiff_t>(from);
        return images::Bytes(begin, begin + static_cast<std::ptrdiff_t>(count));
    };
    const images::Bytes subBytes = bytes(image.At(3), 512);
    const std::string root = AreaDump(" Raw Root Directory", bytes(19 * 512, 224 * 32));
    const std::string sub = ChainDump({3}, {subBytes.begin(), subBytes.end()});
    const std::string subInfo = "[SUBFOL~1.   ] Sub folder\r\n     " + kDates + " CL-0003";
    const std::pair<const char*, std::string> rows[] = {
        {"select 1",
         " README  .TXT  Read me first.txt\r\n    A" + kDates + " CL-0002 SZ (0000014)"},
        {"choose Display", "Hello\r\nWorld\r\n"},
        {"select 2", subInfo},
        {"choose Dump", sub},
        {"select 0", root},
        {"select 3", ChainDump(kBig, Noise(3000))},
        {"choose File info\nselect 2", subInfo},
        {"press Root", root},
        {"choose File info", subInfo},
        {"press Root\nselect 2", subInfo},
        {"double 2\nchoose Dump\nselect 3", ""},
        {"choose Display\nselect 3", ""},
        {"choose Dump\nselect 1", root},
        {"select 0", sub}};
    for (const auto& [steps, shown] : rows) {
        EXPECT_EQ(Run(steps), "");
        EXPECT_TRUE(Same(Show("display"), shown)) << steps;
        EXPECT_FALSE(Busy);
    }
}

TEST_F(WindowTest, DamagedDirectoriesLeaveTheWindowUsable) {
    Image image;
    image.Add(0, {.Name = "..", .Attributes = 0x10});
    image.Add(0, {.Name = "HOLE", .Attributes = 0x10, .Cluster = 50});
    image.SetFat(50, 0xFFF);
    const int self = image.AddDirectory(0, {.Name = "SELF"});
    image.Add(self, {.Name = "DOWN", .Attributes = 0x10, .Cluster = 2});
    image.Add(0, {.Name = "\xE5"
                          "LABEL     ",
                  .Attributes = 8});
    image.Add(0, {.Name = "FAR", .Attributes = 0x10, .Cluster = 65535});
    Open(image);
    EXPECT_EQ(Window->Form.lblVolumeID.Caption.Get(), "{.LABEL     } ") << "deleted or not";
    EXPECT_EQ(Run("double 1"), "box\tError\tThere is no directory above the root\n");
    EXPECT_EQ(Run("choose Dump\ndouble 2\nshow list\nshow display\nfile\nmenu Save File\nmenu Save "
                  "Directory\n"
                  "choose Dump\nshow display\npress Directory\nshow display\nselect 0"),
              "disabled Save Directory\ntessel-drive: no such list line: select 0\n")
        << "an empty list: nothing selected, an empty display, entry 0 in the File menu";
    Open(image);
    EXPECT_EQ(Run("double 3\n" + Times(510, "double 2\n")), "");
    EXPECT_EQ(Window->Form.DirDepth, 511);
    EXPECT_EQ(Run("double 2"), "box\tError\tThe directory is too deep: the limit is 511 levels\n");
    EXPECT_EQ(Window->Form.DirDepth, 511);
    EXPECT_EQ(Run("double 1\ndouble 4\nshow list"), "") << "far past the end of the image";
}

TEST_F(WindowTest, ReadErrorsAreReportedAndTheRestIsBrowsed) {
    const Image image = SampleImage();
    FailReads(Write("disk.img", image.File()), 19 * 512 + 160, 20 * 512);
    EXPECT_EQ(Run("file @/disk.img\nmenu Open\nselect 1\nshow list"),
              ErrorBox(57) + "0\t[.           ]\n>4\t README  .TXT \n");
    FailReads(At("disk.img"), 600, 700);
    EXPECT_EQ(Run("file @/disk.img\nmenu Open\nchoose Display\nselect 1\nshow display"),
              ErrorBox(57) + "Hello\r\nWorld\r\n")
        << "the FAT is unreadable after cluster 58";
    FailReads(At("disk.img"), image.At(24) + 100);
    Run("file @/disk.img\nmenu Open\nchoose Dump\nselect 3");
    EXPECT_TRUE(Same(Show("display"), ChainDump(kBig, Noise(1124))))
        << "a view ends at the read error";
    FailReads(At("disk.img"), image.At(3) + 64);
    EXPECT_EQ(Run("double 2\nshow list"), ErrorBox(57) + ">0\t[.           ]\n1\t[..          ]\n");
    EXPECT_TRUE(Window->Form.listDIR.Enabled && Window->Form.VolumeOpen && !Busy);
}

TEST_F(WindowTest, AVolumeWithoutClusterSizeShowsNothing) {
    // Its cluster count is that of the previous volume, so its chains can still loop.
    Open(SampleImage());
    Image image({.SectorsPerCluster = 0});
    image.Add(0, {.Name = "LOOP", .Cluster = 2, .Size = 5000});
    image.Add(0, {.Name = "DIR", .Attributes = 0x10, .Cluster = 2});
    image.SetFat(2, 2);
    EXPECT_EQ(Open(image), "");
    EXPECT_EQ(Drives[1].ClusterCount, 2880);
    EXPECT_EQ(Run("choose Dump\nselect 1\nshow display"), "");
    EXPECT_EQ(Run("choose Display\nshow display"), "");
    EXPECT_EQ(Window->Form.rtfDisplay.Text.LineCount(), 1);
    EXPECT_EQ(Run("double 2\nshow list"), "");
}

}  // namespace
}  // namespace tessel
