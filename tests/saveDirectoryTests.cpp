#include <set>

#include "platform/hostFiles.h"
#include "tests/fixture.h"
#include "volume/modDisks.h"

/// Save Directory.
namespace tessel {
namespace {

namespace fs = std::filesystem;

/// The display after Save Directory: a line for each of `names`, which ends with "+" if it was
/// saved and with "-" if it failed; and the totals.
std::string Shown(const std::string& names, Long total, Long saved, Long failed) {
    std::string text;
    for (std::string name : Words(names)) {
        text += name.back() == '+' ? "Saved - @/" : "Failed - @/";
        name.pop_back();
        text += name == "out/disk/README" ? "out/disk/Read me first.txt\r\n" : name + "\r\n";
    }
    return text + "\r\n Total Files  - " + std::to_string(total) + "  Saved - " +
           std::to_string(saved) + "  Failed - " + std::to_string(failed);
}

TEST_F(WindowTest, ADirectoryIsSavedIntoMirroredFolders) {
    fs::create_directory(At("out"));
    Open(SampleImage(), "A.B.img");
    EXPECT_EQ(Run("folder @/out\nmenu Save Directory\nshow display"),
              "Saved - @/out/A.B/Read me first.txt\r\n" + Shown("out/A.B/BIG.BIN+", 2, 2, 0));
    EXPECT_EQ(CurrentFolder(), At("out/A.B"));
    EXPECT_EQ(Run("double 2\nfolder-close\nmenu Save Directory\nshow display"),
              "Saved - @/out/A.B/Sub folder/INNER.TXT\r\nSaved - @/out/A.B/Sub folder/EMPTY\r\n" +
                  Shown("", 2, 2, 0))
        << "the close box keeps the folder in which the chooser started";
    EXPECT_EQ(Tree("out"),
              "A.B/\nA.B/BIG.BIN\nA.B/Read me first.txt\nA.B/Sub folder/\n"
              "A.B/Sub folder/EMPTY\nA.B/Sub folder/INNER.TXT\n");
    EXPECT_TRUE(Same(Read("out/A.B/BIG.BIN"), Noise(3000)));
    EXPECT_EQ(Read("out/A.B/Sub folder/INNER.TXT"), "inside\n");
    EXPECT_EQ(Settings.Read("Paths", "SAVEALL", "?"), At("out"));
    const std::string before = Show("display");
    EXPECT_EQ(Run("folder\nmenu Save Directory\nshow display"), before) << "Cancel";
    EXPECT_EQ(Settings.Read("Paths", "SAVEALL", "?"), "");
    EXPECT_EQ(Run("menu Close\nfolder @/out\nmenu Save Directory"), "disabled Save Directory\n");
}

TEST_F(WindowTest, StopEndsSaveDirectory) {
    struct Row {
        int StopAt;  // events are processed before each row, and after the first cluster of BIG.BIN
        std::string Shown;
        std::uintmax_t Big;
    };
    const Row rows[] = {{1, Shown("", 2, 0, 0), 0},
                        {5, Shown("out/disk/README-", 2, 0, 1), 0},
                        {8, Shown("out/disk/README+", 2, 1, 0), 0},
                        {10, Shown("out/disk/README+ out/disk/BIG.BIN-", 2, 1, 1), 512}};
    Open(SampleImage());
    for (const Row& row : rows) {
        fs::current_path(Folder);  // some hosts do not delete a current folder
        fs::remove_all(At("out"));
        fs::create_directory(At("out"));
        EXPECT_EQ(Run("stop-at " + std::to_string(row.StopAt) +
                      "\nfolder @/out\nmenu Save Directory\nshow display"),
                  row.Shown);
        EXPECT_EQ(Read("out/disk/BIG.BIN").size(), row.Big);
        EXPECT_FALSE(Busy || StopRequested);
    }
    // While it runs, another one cannot start, and Close waits for its end.
    Window->Desktop.OnEvents = [this] { Run("folder @\nmenu Save Directory\nmenu Close"); };
    EXPECT_EQ(Run("folder @/out\nmenu Save Directory"), "");
    EXPECT_FALSE(Drives[1].IsOpen);
    EXPECT_EQ(Window->Desktop.Folders.size(), 1U);
}

TEST_F(WindowTest, FailuresInSaveDirectoryAreCounted) {
    const Image image = SampleImage();
    const auto run = [this](const std::string& folder) {
        return Run("folder @/" + folder + "\nmenu Save Directory");
    };
    const std::string both = Shown("out/disk/README- out/disk/BIG.BIN-", 2, 0, 2);
    Open(image);
    fs::create_directory(At("out"));
    Write("out/disk", std::string("in the way"));
    const std::string inPlace = " has the name of the folder: @/out/disk" + kAlike;
    EXPECT_EQ(run("out"), OpenErrorBox(58, "out/disk/Read me first.txt", "A file" + inPlace));
    EXPECT_EQ(Show("display"), both);
    // A link that has the folder's name: nothing is saved through it. A chosen folder may be a
    // link.
    fs::remove(At("out/disk"));
    fs::create_directory(At("outside"));
    if (!MakeLink(At("outside"), At("out/disk"))) GTEST_SKIP() << "this host makes no links";
    MakeLink(At("outside"), At("link"));
    EXPECT_EQ(run("out"),
              OpenErrorBox(58, "out/disk/Read me first.txt", "A symbolic link" + inPlace));
    EXPECT_EQ(Show("display"), both);
    EXPECT_EQ(Tree("outside"), "");
    fs::remove(At("out/disk"));
    // The chosen folder is removed between two files; then the folder of the image.
    const auto removeWhileSaving = [this](const char* name) {
        Window->Desktop.OnEvents = [this, name, calls = 0]() mutable {
            if (++calls == 6) fs::remove_all(At(name));
        };
    };
    removeWhileSaving("outside");
    EXPECT_EQ(run("link"),
              ErrorBox(76, "|Error entering Folder @/link|The folder no longer exists."));
    EXPECT_EQ(Show("display"), "Saved - @/link/disk/Read me first.txt\r\n" + Shown("", 2, 1, 0));
    removeWhileSaving("out/disk");
    EXPECT_EQ(run("out"), "");
    EXPECT_EQ(Show("display"), Shown("out/disk/README+ out/disk/BIG.BIN+", 2, 2, 0));
    EXPECT_EQ(Tree("out"), "disk/\ndisk/BIG.BIN\n") << "the folder was created again";
    Window->Desktop.OnEvents = nullptr;
    FailReads(At("disk.img"), image.At(2), image.At(3));
    EXPECT_EQ(run("out"),
              ErrorBox(57, "|Error reading Disk Image @/out/disk/Read me first.txt" + kAlike));
    EXPECT_EQ(Show("display"), Shown("out/disk/README- out/disk/BIG.BIN+", 2, 1, 1));
    StopFailingReads();
    // The image is truncated, and then removed: the missing part reads as zeros.
    fs::resize_file(At("disk.img"), image.At(24));
    fs::remove(At("disk.img"));
    run("out");
    std::string cut = Noise(3000);  // in clusters 20, 22, 24, 21, 26, 30
    cut.replace(1024, 512, 512, '\0').replace(2048, 952, 952, '\0');
    EXPECT_TRUE(Same(Read("out/disk/BIG.BIN"), cut));
}

TEST_F(WindowTest, NamesFromTheImageStayInsideTheChosenFolder) {
    using Name = std::pair<std::u16string, std::string>;  // in the image, and on the host
    const std::vector<Name> names = {{u"../up.txt", ".._up.txt"},
                                     {u"..\\up.txt", "..\\up.txt"},
                                     {u"/etc/abs", "_etc_abs"},
                                     {u"..", "__"},
                                     {u".", "_"},
                                     {u"twice", "twice"},
                                     {u"twice", "twice (2)"},
                                     {u"folder", "folder/"},
                                     {u"filelink", "filelink"},
                                     {u"dirlink", "dirlink@"},
                                     {u"dangling", "dangling@"}};
    Image image;
    std::set<std::string> lines = {"__/\n", "__/.._.._evil/\n", "__/.._.._evil/A_B.C\n"};
    for (const auto& [name, created] : names) {
        image.AddFile(0, {.Name = "F", .LongName = name}, std::to_string(name.size()));
        lines.insert("__/" + created + "\n");
    }
    const int evil = image.AddDirectory(0, {.Name = "D", .LongName = u"../../evil"});
    image.AddFile(evil, {.Name = "A/B.C"}, "deep");
    fs::create_directories(At("case/out/__/folder"));
    Write("case/victim", std::string("safe"));
    if (!MakeLink(At("case/victim"), At("case/out/__/filelink"))) {
        GTEST_SKIP() << "this host makes no links";
    }
    MakeLink(At("case"), At("case/out/__/dirlink"));
    MakeLink(At("case/new"), At("case/out/__/dangling"));

    Open(image, "...img");
    Run("folder @/case/out\nmenu Save Directory\ndouble 12\nfolder-close\nmenu Save Directory");
    std::string tree;
    for (const std::string& line : lines) tree += line;
    EXPECT_TRUE(Same(Tree("case/out"), tree));
    EXPECT_FALSE(fs::exists(At("case/new")));
    EXPECT_EQ(Read("case/victim"), "safe");
    EXPECT_EQ(Read("case/out/__/filelink"), "8") << "the file replaced the link";
}

TEST_F(WindowTest, FilesOfOneHostNameAreAllSaved) {
    const std::u16string wide(200, u'\u00E9');  // two bytes each
    const std::pair<std::u16string, std::string> names[] = {
        {u"x/b.txt", "x_b.txt"},
        {u"x_b.txt", "x_b (2).txt"},
        {u"x\x01"
         u"b.txt",
         "x_b (3).txt"},
        {u"x_b (4).txt", "x_b (4).txt"},
        {u"x_b.txt", "x_b (5).txt"},
        {u"..", "__"},
        {u"__", "__ (2)"},
        {u".hidden", ".hidden"},
        {u".hidden", ".hidden (2)"},
        {u"\xD800", "\xEF\xBF\xBD"},
        {u"\xDC00", "\xEF\xBF\xBD (2)"},
        {wide + u"1", Times(127, "\xC3\xA9")},
        {wide + u"2", Times(125, "\xC3\xA9") + " (2)"},
        {u"linked", "linked (6)"}};
    Image image;
    std::string lines;
    Long content = 0;
    for (const auto& [longName, host] : names) {
        image.AddFile(0, {.Name = "F", .LongName = longName}, std::to_string(++content));
        lines += "Saved - @/out/disk/" + host + "\r\n";
    }
    Open(image);
    fs::create_directories(At("out/disk"));
    Write("out/disk/x_b (2).txt", std::string("from before the run"));
    // A host on which "linked" is another name of the first file, as where case does not count.
    Window->Desktop.OnEvents = [this] {
        std::error_code notYet;
        fs::create_hard_link(At("out/disk/x_b.txt"), At("out/disk/linked"), notYet);
    };
    EXPECT_EQ(Run("folder @/out\nmenu Save Directory\nshow display"),
              lines + "\r\n Total Files  - 14  Saved - 14  Failed - 0");
    content = 0;
    for (const auto& [longName, host] : names) {
        EXPECT_EQ(Read("out/disk/" + host), std::to_string(++content)) << host;
    }
}

}  // namespace
}  // namespace tessel
