#include "drive/resetVolume.h"
#include "platform/numberedFiles.h"
#include "tests/fixture.h"
#include "volume/modDisks.h"

/// Opening, closing, the busy state, the controls of the window.
namespace tessel {
namespace {

const std::string kNothingEnabled =
    "cmdABORT\ton\ncmdDirectory\toff\ncmdDisplayBootSector\toff\ncmdFat0\toff\ncmdRoot\toff\n"
    "optDisplay(0)\toff\noptDisplay(1)\toff\noptDisplay(2)\toff\noptDisplay(3)\toff\nlistDIR\toff\n"
    "mnuOpen\ton\nmnuClose\ton\nmnuSaveTxt\ton\nmnuSaveFile\toff\nmnuSaveDirectory\toff\n"
    "mnuExit\ton\nmnuOffset\ton\n";

/// `text`, with the named controls in another state.
std::string With(std::string text, const std::string& names, const std::string& state) {
    for (const std::string& name : Words(names)) {
        const std::size_t at = text.find(name + "\t") + name.size() + 1;
        text.replace(at, text.find('\n', at) - at, state);
    }
    return text;
}

std::string Labels(const std::string& volume, const std::string& system, const std::string& caption,
                   const std::string& directory = "") {
    return "lblVolumeID\t" + volume + "\nlblSystemID\t" + system + "\nlblDirectory\t" + directory +
           "\nlblVersion\tV 1.0.0\ncaption\t" + caption + "\n";
}

TEST_F(WindowTest, AnImageIsOpenedAndClosed) {
    EXPECT_EQ(Show("labels"), Labels("", "", "Tessel"));
    EXPECT_EQ(Show("enabled"), kNothingEnabled);
    EXPECT_EQ(Open(SampleImage()), "");
    EXPECT_TRUE(Fat1Bytes.size() == 4608 && Fat1Bytes == Fat0Bytes);
    EXPECT_EQ(Show("labels"), Labels("{MYDISK     } ", "FAT12", "FAT File System @/disk.img"));
    EXPECT_EQ(Show("list"),
              ">0\t[.           ]\n4\t README  .TXT \n7\t[SUBFOL~1.   ]\n8\t BIG     .BIN \n");
    EXPECT_EQ(Show("display"), "") << "the first line is selected, but not shown yet";
    EXPECT_EQ(Show("enabled"),
              With(kNothingEnabled,
                   "cmdDirectory cmdDisplayBootSector cmdFat0 cmdRoot optDisplay(0) optDisplay(1) "
                   "optDisplay(2) listDIR mnuSaveFile mnuSaveDirectory",
                   "on"));
    EXPECT_EQ(Run("menu Offset\nselect 2\nmenu Save File\nfile\nmenu Open\nshow list"),
              "disabled Offset\ndisabled Save File\n0\t[.           ]\n4\t README  .TXT \n"
              ">7\t[SUBFOL~1.   ]\n8\t BIG     .BIN \n")
        << "Cancel changes nothing";
    EXPECT_EQ(Run("menu Close\nshow list\nshow display"), "");
    EXPECT_EQ(Show("labels"), Labels("", "", "FAT File System"));
    EXPECT_EQ(Show("enabled"), With(kNothingEnabled, "mnuOffset", "off"))
        << "updated when its menu opens";
    EXPECT_EQ(
        Run("menu Close\nmenu Offset\npress STOP\npress Root\nchoose Dump\nchoose SuperBlock"),
        "disabled Root\ndisabled Dump\ndisabled SuperBlock\n");
    // A second image replaces the first, and one that cannot be opened leaves none open.
    Open(SampleImage(), "one.img");
    Run("double 2\nchoose Dump\nselect 2");
    Image other({.NumberOfFats = 0});  // nothing of the previous image is shown
    other.AddFile(0, {.Name = "OTHER"}, "other");
    EXPECT_EQ(Open(other, "two.img"), "");
    EXPECT_EQ(Run("show list\nshow display\nshow labels"),
              ">0\t[.           ]\n1\t OTHER   .    \n" +
                  Labels("NO NAME", "FAT12", "FAT File System @/two.img"));
    EXPECT_EQ(Window->Form.DirDepth, 0);
    EXPECT_EQ(Run("press FAT0\nshow display"), " FAT ends after 0 of 2880 entries\r\n");
    EXPECT_NE(Run("file @/gone.img\nmenu Open"), "");
    EXPECT_FALSE(Drives[1].IsOpen);
    EXPECT_EQ(Show("enabled"), With(kNothingEnabled, "cmdABORT", "off"));
}

TEST_F(WindowTest, ImagesThatCannotBeOpenedAreReported) {
    std::filesystem::create_directory(At("folder"));
    const bool pipe = MakePipe(At("pipe"));
    FailReads(Write("bad", SampleImage().File()), 511, 512);
    const std::pair<std::string, int> rows[] = {{"gone", 53}, {"gone/x", 76}, {"bad/x", 76},
                                                {"bad", 57},  {"folder", 75}, {"pipe", 75}};
    for (const auto& [name, error] : rows) {
        if (name == "pipe" && !pipe) continue;
        EXPECT_EQ(Run("file @/" + name + "\nmenu Open\nshow display\nshow list\nshow labels"),
                  OpenErrorBox(error, name) + Labels("", "", "FAT File System"));
    }
}

TEST_F(WindowTest, AVolumeIsRefusedWithItsBootSectorShown) {
    const auto sector = [](int clusters, int signature) {
        Image image({.SmallSectors = clusters, .BootSignature = signature});
        image.Volume.resize(512);
        return image.Volume;
    };
    struct Row {
        std::string Name;
        images::Bytes File;
        std::string Volume, System;
    };
    const Row rows[] = {{"fat32", sector(65520, 0), "NO NAME", "Fat32\tblue"},
                        {"swapped", sector(65519, 0x55AA), "NO NAME", "Fat16\tblue"},
                        {"fat12", sector(4079, 0), "NO NAME", "FAT12"},
                        {"empty", {}, "...........", "Fat12\tblue"},
                        {"cut", images::Bytes(510, 0x20), "", "Fat12\tblue"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.Name);
        const bool fat32 = row.Name == "fat32";
        ResetVolume();
        Restart();
        Write(row.Name, row.File);
        bool dumped = fat32;
        TheHost.MessageBox = [this, &dumped, show = TheHost.MessageBox](const std::string& text,
                                                                        const std::string& title) {
            dumped = dumped != (Window->Form.rtfDisplay.Text.Size() > 0);
            show(text, title);
        };
        EXPECT_EQ(Run("file @/" + row.Name + "\nmenu Open"),
                  fat32 ? "box\tBad FAT type\tFAT32 is not supported\n"
                        : "box\tBad Boot Sector\tNo Boot Signature\n");
        EXPECT_TRUE(dumped) << "after the FAT32 box, before the other";
        EXPECT_EQ(Show("labels"), Labels(row.Volume, row.System, "FAT File System @/" + row.Name));
        images::Bytes shown = row.File;
        shown.resize(512);
        EXPECT_TRUE(Same(Show("display"), AreaDump(" Raw Boot Sector 0", shown)));
        EXPECT_EQ(Show("enabled"), kNothingEnabled);
        EXPECT_FALSE(FileIsOpen(kImageFile));
        EXPECT_EQ(Run("file @/" + row.Name + "\nmenu Save Display"),
                  OpenErrorBox(55, row.Name, "This is the image itself, which is never written."));
        EXPECT_EQ(Run("file @/shown.txt\nmenu Save Display\nmenu Offset"), "");
        EXPECT_TRUE(Same(Read("shown.txt"), AreaDump(" Raw Boot Sector 0", shown)));
    }
}

TEST_F(WindowTest, TheOffsetIsAskedForUntilItIsValid) {
    std::string asked;
    TheHost.InputBox = [&asked, ask = TheHost.InputBox](
                           const std::string& prompt, const std::string& title,
                           const std::string& text, const std::vector<InputChoice>& choices) {
        EXPECT_EQ(prompt + "|" + title, "Input Offset (0 to 2GB)|Partition Offset");
        asked += text + ";";
        return ask(prompt, title, text, choices);
    };
    // The answers, the initial texts of the box, and the resulting offset.
    const std::tuple<std::string, std::string, Long> rows[] = {
        {"input\n", "0;", 0},
        {"input 63k\n", "0;", 64512},
        {"input  1x \ninput &HFG\ninput 0x7E00\n", "64512;1x;&HFG;", 32256},
        {"input 513M\ninput\n", "32256;513M;", 32256},
        {"input   \ninput 0\n", "32256;;", 0},
        {"input 32256\n", "0;", 32256}};
    for (const auto& [answers, defaults, offset] : rows) {
        asked.clear();
        EXPECT_EQ(Run(answers + "menu Offset"), "");
        EXPECT_EQ(PartitionOffset, offset);
        EXPECT_EQ(asked, defaults);
    }
    EXPECT_EQ(Open(SampleImage({.PartitionOffset = 32256})), "");
    EXPECT_EQ(Run("double 2\nchoose Display\nselect 2\nshow display"), "inside\n");
    Restart();
    EXPECT_EQ(PartitionOffset, 0);
}

TEST_F(WindowTest, WhileBusyOnlyStopAndTheFileMenuWork) {
    Image image = SampleImage();
    image.AddFile(0, {.Name = "LONG"}, Noise(900 * 512));
    Open(image);
    const std::string cluster = ChainDump({31}, Noise(512));
    std::string seen;
    Window->Desktop.OnEvents = [this, &seen] {
        if (!seen.empty()) return;
        EXPECT_TRUE(Busy && Window->Desktop.Hourglass);
        seen =
            Run("menu Save Directory\nmenu Open\nselect 1\npress Root\nmenu Save File\n"
                "menu Offset\nfile @/part.txt\nmenu Save Display\nshow enabled");
    };
    Run("choose Dump\nstop-at 1\nselect 4");
    EXPECT_EQ(seen,
              "disabled Save Directory\ndisabled Root\ndisabled Save File\ndisabled Offset\n" +
                  With(kNothingEnabled, "mnuOffset", "off"));
    EXPECT_TRUE(Same(Show("display"), cluster));
    EXPECT_TRUE(Same(Read("part.txt"), cluster)) << "what had been shown until then";
    EXPECT_FALSE(Busy || Window->Desktop.Hourglass || Window->Form.cmdABORT.Enabled);
    EXPECT_TRUE(Window->Form.listDIR.Enabled);
    Run("choose Display");
    EXPECT_GT(Window->Form.rtfDisplay.Text.Size(), 900 * 512)
        << "STOP does not affect the next command";

    // Close and Exit take effect when the long operation has ended.
    for (const std::string command : {"menu Close", "menu Exit"}) {
        Restart();
        Open(image);
        bool openInside = false;
        Window->Desktop.OnEvents = [&] {
            Run(command);
            openInside = FileIsOpen(kImageFile) && Drives[1].IsOpen && !Window->Desktop.Ended;
        };
        EXPECT_EQ(Run("choose Display\nselect 4"), "");
        EXPECT_TRUE(openInside) << command;
        EXPECT_EQ(Window->Desktop.Ended, command != "menu Close");
        EXPECT_EQ(FileIsOpen(kImageFile), command != "menu Close");
        EXPECT_FALSE(Busy);
    }
    Restart();
    Run("menu Exit\nmenu Open");
    EXPECT_TRUE(Window->Desktop.Ended) << "at once when not busy";
}

}  // namespace
}  // namespace tessel
