#include <array>
#include <cstdio>
#include <numeric>
#include <stdexcept>

#include "app/textFile.h"
#include "tests/fixture.h"
#include "volume/modDisks.h"

/// Save File and Save Display.
namespace tessel {
namespace {

namespace fs = std::filesystem;

TEST_F(WindowTest, AFileIsSavedByItsChainAndSize) {
    struct Row {
        const char *Name, *Suggested;
        std::vector<int> Chain;
        int End;
        std::int64_t Size;
        std::string Content;
    };
    const std::string noise = Noise(1024), half = Noise(512), zeros(512, '\0');
    // A free entry leads to cluster 0, two clusters before the data area, and from there far away.
    const std::string zero = "cluster zero" + std::string(506, '\0');
    const Row rows[] = {
        {"EXACT.X", "EXACT.X", {100, 101}, 0xFFF, 1024, noise},
        {"CUT", "CUT.", {102, 101}, 0xFFF, 1000, noise.substr(0, 1000)},
        {"SHORT", "SHORT.", {110, 111}, 0xFFF, 5000, noise},
        {"LOOP", "LOOP.", {120, 121}, 120, 2500, noise + noise + noise.substr(0, 452)},
        {"MARK", "MARK.", {130}, 0xFF8, 1000, half + zeros.substr(24)},
        {"FREE", "FREE.", {140}, 0, 1030, half + zero},
        {"BEYOND", "BEYOND.", {150}, 2900, 5000, half + zeros},
        {"NEGATIVE", "NEGATIVE.", {160, 161}, 0xFFF, 0xFFFFFFFE, noise},
        {"NONE", "NONE.", {4000}, 0xFFF, 700, zeros},
        {"EMPTY", "EMPTY.", {170}, 0xFFF, 0, ""}};
    Image image;
    for (const Row& row : rows) {
        const std::size_t size = std::min<std::size_t>(row.Chain.size() * 512, 1024);
        image.AddFile(0, {.Name = row.Name, .Size = row.Size}, noise.substr(0, size), row.Chain);
        image.Link(row.Chain, row.End);
    }
    image.Poke(image.At(0), "cluster zero");
    Open(image);
    int line = 0;
    for (const Row& row : rows) {
        Write("saved", std::string("the previous content"));
        Run("select " + std::to_string(++line) + "\nfile @/saved\nmenu Save File");
        EXPECT_EQ(Window->Desktop.LastDialog->FileName, row.Suggested);
        EXPECT_TRUE(Same(Read("saved"), row.Content)) << row.Name;
    }
    const auto executable = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
    EXPECT_EQ(fs::status(At("saved")).permissions() & executable, fs::perms::none);
    EXPECT_EQ(Run("file\nmenu Save File\nshow dialog"),
              "title\tSave DOS File\nfilter\tAll Files (*.*)|*.*\ndefaultExtension\t\n"
              "filterIndex\t1\nstartFolder\t@/\nfileName\tEMPTY.\nflags\t2131974\n");
    EXPECT_TRUE(!Busy && Window->Form.listDIR.Enabled && !Window->Form.cmdABORT.Enabled);
}

/// A date and a time of a directory entry, "1998-03-15 14:22:06".
std::string OnDisk(int date, int time) {
    std::array<char, 60> text{};
    std::snprintf(text.data(), text.size(), "%d-%02d-%02d %02d:%02d:%02d", 1980 + (date >> 9),
                  date >> 5 & 15, date & 31, time >> 11, time >> 5 & 63, (time & 31) * 2);
    return text.data();
}

TEST_F(WindowTest, ASavedFileKeepsAValidModificationTime) {
    // Date, time, and whether both are in range.
    const std::tuple<int, int, bool> rows[] = {
        {0x246F, 0x72C3, true},  {0x246F, 0xBF7D, true},  {0x585D, 0, true},
        {0x005D, 0, true},       {0x025D, 0, false},      {0, 0, false},
        {0x246F, 0xC000, false}, {0x246F, 0x0780, false}, {0x246F, 0x001E, false},
        {0x249F, 0, false},      {0x25A1, 0, false},      {0xFF9F, 0, true}};
    Image image;
    for (const auto& [date, time, kept] : rows) {
        image.Add(0, {.Name = "F", .Date = date, .Time = time});
    }
    Open(image);
    const std::string before = ModifiedAt(At("disk.img"));
    int line = 0;
    for (const auto& [date, time, expected] : rows) {
        Run("select " + std::to_string(++line) + "\nfile @/f\nmenu Save File");
        const std::string modified = ModifiedAt(At("f"));
        if (expected) {
            EXPECT_EQ(modified, OnDisk(date, time));
        } else {
            EXPECT_TRUE(modified >= before && modified < "2100")
                << line << " gets the current time";
        }
    }
}

TEST_F(WindowTest, AFileSharesTheExtentsOfItsImageWhereTheHostCan) {
    // 4 KiB clusters at the boundaries of blocks, in two runs; the image ends within the last one.
    Layout layout = Layout::Fat16(5000, 8);
    layout.RootEntries = 16 * (8 - (1 + 2 * layout.SectorsPerFat) % 8);
    Image image(layout);
    std::string content = Noise(200000);
    std::vector<int> clusters(49);
    std::iota(clusters.begin(), clusters.begin() + 20, 100);
    std::iota(clusters.begin() + 20, clusters.end(), 130);
    image.AddFile(0, {.Name = "F"}, content, clusters);
    image.Volume.resize(image.At(clusters.back()) + 100);
    content.replace(48 * 4096 + 100, content.npos, 200000 - 48 * 4096 - 100, '\0');
    Open(image);
    const SharedExtents sharing;
    Run("select 1\nfile @/saved\nmenu Save File");
    EXPECT_TRUE(Same(Read("saved"), content));
    EXPECT_EQ(sharing.Bytes(), sharing ? 48 * 4096 : 0);
    FailReads(At("disk.img"), image.At(110) + 10);
    EXPECT_EQ(Run("file @/saved\nmenu Save File"),
              ErrorBox(57, "|Error reading Disk Image @/saved|"));
    EXPECT_TRUE(Same(Read("saved"), content.substr(0, 10 * 4096 + 10)));
}

TEST_F(WindowTest, AFailedSaveIsReportedAndKeepsWhatWasWritten) {
    const Image image = SampleImage();
    Open(image);
    Run("select 3");
    fs::create_directory(At("folder"));
    Hide(Write(".hidden", std::string("kept")));
    const auto save = [this](const std::string& name, const std::string& command = "Save File") {
        return Run("file @/" + name + "\nmenu " + command);
    };
    EXPECT_EQ(save("folder"), OpenErrorBox(75, "folder", "A folder has this name."));
    const std::string hidden = OpenErrorBox(58, ".hidden", "A hidden file has this name.");
    EXPECT_EQ(save(".hidden"), hidden);
    EXPECT_EQ(save(".hidden", "Save Display"), hidden);
    EXPECT_EQ(Read(".hidden"), "kept");
    EXPECT_EQ(save("gone/x"), OpenErrorBox(76, "gone/x"));
    FailReads(At("disk.img"), image.At(24) + 10);
    EXPECT_EQ(save("part"), ErrorBox(57, "|Error reading Disk Image @/part|"));
    EXPECT_TRUE(Same(Read("part"), Noise(1034)));
    StopFailingReads();
    // A full disk: no file may grow past 1000 bytes.
    Run("choose Dump");
    auto full = std::make_unique<FullDisk>(1000);
    const std::string copied = save("part"), displayed = save("dump.txt", "Save Display");
    full.reset();
    const std::string cause = "|The file exceeds the host's size limit.";
    EXPECT_EQ(copied, ErrorBox(61, "|Error Writting File @/part" + cause));
    EXPECT_EQ(displayed, ErrorBox(61, "|The text was not saved completely:|@/dump.txt" + cause));
    EXPECT_TRUE(Same(Read("part"), Noise(1000)));
    EXPECT_EQ(fs::file_size(At("dump.txt")), 1000U);
    EXPECT_EQ(Run("stop-at 1\nfile @/part\nmenu Save File"), "");
    EXPECT_TRUE(Same(Read("part"), Noise(512))) << "STOP";
    EXPECT_EQ(save("part"), "");
    EXPECT_TRUE(Same(Read("part"), Noise(3000))) << "no target is left open";
    TheHost.Settings.Write = [](const auto&...) { Raise(kPathFileAccessError); };
    EXPECT_EQ(save("x"), ErrorBox(75));
    TheHost.Settings.Write = [](const auto&...) { throw std::runtime_error("text"); };
    EXPECT_EQ(save("x"), "box\tError\tThe command ended with an unexpected error.\\r\\ntext\n");
    EXPECT_TRUE(Window->Form.listDIR.Enabled) << "an uncaught error ends the busy state";
    EXPECT_FALSE(Busy);
}

TEST_F(WindowTest, ClustersPastTheLastOffsetAreReportedAsUnreadable) {
    // Clusters of 64 KiB: the last readable byte is in cluster 32768.
    Image image(images::Layout::Fat16(20000));
    const std::int64_t edge = std::int64_t{32766} * 65536 + static_cast<std::int64_t>(image.At(2));
    image.Poke(13, "\x80");
    image.Poke(19, std::string(2, '\0'));
    image.Poke(32, std::string("\0\x09\x3D\0", 4));
    image.Add(0, {.Name = "FAR", .Cluster = 40000, .Size = 10});
    image.Add(0, {.Name = "FARDIR", .Attributes = 0x10, .Cluster = 40000});
    image.Add(0, {.Name = "EDGE", .Cluster = 32768, .Size = 65536});
    EXPECT_EQ(Open(image), "");
    EXPECT_EQ(Run("choose Dump\nselect 1\nshow display\nchoose Display\nshow display"), "");
    EXPECT_EQ(Run("file @/far\nmenu Save File"), ErrorBox(6, "|Error reading Disk Image @/far|"));
    EXPECT_EQ(Run("select 3\nfile @/edge\nmenu Save File"),
              ErrorBox(6, "|Error reading Disk Image @/edge|"));
    EXPECT_TRUE(fs::is_empty(At("far")));
    EXPECT_EQ(static_cast<std::int64_t>(fs::file_size(At("edge"))), 2147483647 - edge);
    EXPECT_EQ(Run("double 2\nshow list"), ErrorBox(6));
}

TEST_F(WindowTest, WithoutFileHandlesEverySaveFailsWithAReport) {
    fs::create_directory(At("out"));
    Open(SampleImage());
    Run("select 3");
    ErrorOf([] { Raise(kOverflow); });  // a sanitizer needs handles at the first exception
    auto none = std::make_unique<NoHandles>();
    const std::string file = Run("file @/out/a\nmenu Save File"),
                      text = Run("file @/out/b\nmenu Save Display"),
                      directory = Run("folder @/out\nmenu Save Directory");
    none.reset();
    const std::string cause = "Too many files are open.";
    EXPECT_EQ(file, OpenErrorBox(75, "out/a", cause));
    EXPECT_EQ(text, OpenErrorBox(75, "out/b", cause));
    EXPECT_EQ(directory, ErrorBox(75, "|Error entering Folder @/out|" + cause));
    EXPECT_EQ(Run("select 3\nfile @/out/a\nmenu Save File"), "");
    EXPECT_TRUE(Same(Read("out/a"), Noise(3000)));
}

TEST_F(WindowTest, WithoutPermissionNothingIsChanged) {
    fs::create_directory(At("out"));
    Write("out/a", std::string("kept"));
    Write("secret", std::string("secret"));
    Open(SampleImage());
    Run("select 3");
    const auto readable = static_cast<fs::perms>(0555);
    fs::permissions(Folder, readable | fs::perms::owner_write);
    fs::permissions(At("out"), readable);
    fs::permissions(At("secret"), fs::perms::none);
    const std::string before = Tree("");
    auto user = std::make_unique<OrdinaryUser>();
    if (!*user) GTEST_SKIP() << "this host has no such permissions";
    const std::string cause = "The folder is not writable: @/out";
    EXPECT_EQ(Run("file @/out/a\nmenu Save File"), OpenErrorBox(75, "out/a", cause + "/"));
    EXPECT_EQ(Run("file @/out/b\nmenu Save Display"), OpenErrorBox(75, "out/b", cause + "/"));
    EXPECT_EQ(Run("folder @/out\nmenu Save Directory"),
              OpenErrorBox(75, "out/disk/Read me first.txt", cause + kAlike));
    EXPECT_EQ(Run("file @/secret\nmenu Open"), OpenErrorBox(75, "secret"));
    user.reset();
    fs::permissions(At("out"), fs::perms::owner_all);
    EXPECT_EQ(Tree(""), before);
    EXPECT_EQ(Read("out/a"), "kept");
}

TEST_F(WindowTest, TheOpenImageIsReadOnlyAndIsNotReplaced) {
    const Image first = SampleImage();
    Open(first);
    EXPECT_TRUE(IsOpenForReadingOnly(At("disk.img")));

    // Another image takes the name: the open one is still the one that is read.
    Image other;
    other.AddFile(Image::kRoot, {.Name = "OTHER.TXT"}, "other");
    fs::rename(At("disk.img"), At("first.img"));
    fs::rename(Write("other.img", other.File()), At("disk.img"));
    const std::string before = Read("disk.img");
    Run("choose Dump\nselect 3");
    EXPECT_TRUE(Same(Show("display"), ChainDump(kBig, Noise(3000))));
    Run("file @/big\nmenu Save File\nfile @/disk.img\nmenu Open");
    EXPECT_TRUE(Same(Read("big"), Noise(3000)));
    EXPECT_TRUE(Same(Read("disk.img"), before));
    EXPECT_NE(Show("list").find("OTHER"), std::string::npos);
}

TEST_F(WindowTest, TheImageIsNeverWritten) {
    // An image that Save Directory would write to, because of its name; and all paths that lead to
    // it.
    Image image;
    image.AddFile(0, {.Name = "README.TXT"}, "x");
    fs::create_directories(At("out/README"));
    const std::string target = Write("out/README/README.TXT", image.File());
    const auto moment = fs::last_write_time(target);
    fs::create_hard_link(target, At("hard"));
    const bool link = MakeLink(target, At("README.dsk"));
    const std::string opened = link ? "README.dsk" : "out/README/README.TXT";
    EXPECT_EQ(Run("file @/" + opened +
                  "\nmenu Open\nselect 1\nchoose Dump\nchoose Display\npress Root\n"
                  "press FAT0\npress Boot Sector\npress Directory"),
              "");
    const std::string cause = "This is the image itself, which is never written.";
    for (const std::string name : {"out/README/README.TXT", "hard", opened.c_str()}) {
        EXPECT_EQ(Run("file @/" + name + "\nmenu Save File"), OpenErrorBox(55, name, cause));
        EXPECT_EQ(Run("file @/" + name + "\nmenu Save Display"), OpenErrorBox(55, name, cause));
        EXPECT_TRUE(fs::exists(At(name)));
    }
    EXPECT_EQ(Run("folder @/out\nmenu Save Directory"),
              OpenErrorBox(55, "out/README/README.TXT", cause + kAlike));
    EXPECT_EQ(Run("file @/a\nmenu Save File\nfile @/b\nmenu Save Display\nfolder @\n"
                  "menu Save Directory"),
              "");
    if (link) fs::remove(At(opened));
    EXPECT_EQ(Run("file @/hard\nmenu Save File"), OpenErrorBox(55, "hard", cause))
        << "although the name that was opened is gone";
    EXPECT_TRUE(Same(Read("hard"), {image.Volume.begin(), image.Volume.end()}));
    EXPECT_EQ(fs::last_write_time(target), moment);
    EXPECT_EQ(Tree(""),
              "README/\nREADME/README.TXT\na\nb\nhard\nout/\nout/README/\n"
              "out/README/README.TXT\n");
}

TEST_F(WindowTest, TheDisplayIsSavedAsText) {
    EXPECT_EQ(Run("file @/empty.txt\nmenu Save Display"), "");
    EXPECT_TRUE(fs::is_empty(At("empty.txt"))) << "without an image too";
    // CR LF, CR and LF alone, and one CR LF that is split between two parts.
    const std::string start = "a\rb\nc\r\nd\r\r\ne\n\rf";
    const std::string converted = "a\r\nb\r\nc\r\nd\r\n\r\ne\r\n\r\nf";
    const std::string filling((1 << 20) - 1 - start.size(), 'x');
    Image image;
    image.AddFile(0, {.Name = "MIXED.TXT", .LongName = u"Gr\u00FC\u00DFe"},
                  start + filling + "\r\ng\ny\r");
    Open(image);
    Run("choose Display\nselect 1");
    Write("mixed.txt", std::string("old"));
    EXPECT_EQ(
        Run("file @/mixed.txt\nmenu Save Display\nshow dialog"),
        "title\tSave Display as Text File\nfilter\tText File (*.txt)|*.txt|All Files (*.*)|"
        "*.*\ndefaultExtension\ttxt\nfilterIndex\t1\nstartFolder\t@/\nfileName\tGr\u00FC\u00DFe"
        "\nflags\t2131974\n");
    EXPECT_TRUE(Same(Read("mixed.txt"), converted + filling + "\r\ng\r\ny\r\n"));
    // Events that are processed while it is written do not change what is written.
    Window->Desktop.OnEvents = [this] { Run("choose File info\nmenu Save Display\nmenu Open"); };
    EXPECT_EQ(Run("choose Display\nfile @/again.txt\nmenu Save Display"), "");
    EXPECT_TRUE(Same(Read("again.txt"), Read("mixed.txt")));
    // STOP ends a view that is started meanwhile; Close ends the save, which reports it, and
    // closes.
    Run("choose Dump");
    int calls = 0;
    Window->Desktop.OnEvents = [this, &calls] {
        if (calls++ == 0) Run("stop-at 1\nchoose Display");
    };
    EXPECT_EQ(Run("file @/whole.txt\nmenu Save Display"), "");
    Window->Desktop.OnEvents = nullptr;
    Run("choose Dump");
    EXPECT_TRUE(Same(Read("whole.txt"), Show("display")));
    Window->Desktop.OnEvents = [this] { Run("menu Close"); };
    EXPECT_EQ(Run("file @/part.txt\nmenu Save Display"),
              "box\tError\tThe text was not saved completely:\\r\\n@/part.txt\n");
    EXPECT_FALSE(Drives[1].IsOpen);
    Window->Desktop.OnEvents = nullptr;
    Run("file @/disk.img\nmenu Open\nselect 1\nfile @/info.txt\nmenu Save Display");
    EXPECT_EQ(Read("info.txt").substr(0, 24), " MIXED   .TXT  Gr\u00FC\u00DFe\r\n");
    for (std::size_t cut = 0; cut <= start.size(); ++cut) {
        LineEnds ends;
        std::string joined;
        for (const std::string& part : {start.substr(0, cut), start.substr(cut)}) {
            PageText text(part.begin(), part.end());
            ends.Convert(text, false);
            joined.append(text.begin(), text.end());
        }
        const PageText rest = ends.Rest();
        EXPECT_EQ(joined.append(rest.begin(), rest.end()), converted) << cut;
    }
}

}  // namespace
}  // namespace tessel
