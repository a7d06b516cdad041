#include <windows.h>

#include "platform/hostFiles.h"
#include "platform/windows/hostErrors.h"
#include "tests/fixture.h"

/// What only Windows has in the way of an image or of a saved file.
namespace tessel {
namespace {

namespace fs = std::filesystem;

class WindowsTest : public WindowTest {
  protected:
    std::wstring Wide(const std::string& name) const { return WideText(At(name)); }
    std::string Save(const std::string& name) {
        return Run("select 3\nfile @/" + name + "\nmenu Save File");
    }
    /// Holds a file as another program would, for as long as the result lives.
    std::shared_ptr<void> Hold(const std::string& name, DWORD access, DWORD share) const {
        return {CreateFileW(Wide(name).c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr),
                CloseHandle};
    }
};

TEST_F(WindowsTest, EveryNameOfAnImageBecomesOneThatWindowsAllows) {
    // The name in the image, and the saved file's.
    const std::pair<std::u16string, std::string> names[] = {
        {u"CON.txt", "_CON.txt"},
        {u"aux", "_aux"},
        {u"LPT9.tar.gz", "_LPT9.tar.gz"},
        {u"com1 .x", "_com1 .x"},
        {u"trailing. ", "trailing__"},
        {u"file:stream", "file_stream"},
        {u"a<b>c\"d|e?f*g", "a_b_c_d_e_f_g"},
        {u"up\\..\\..\\x", "up_.._.._x"},
        {u"\x01\x1F", "__"},
        {u"\u65E5\u672C \u0416.txt", "\u65E5\u672C \u0416.txt"},
        {u"same.txt", "same.txt"},
        {u"SAME.TXT", "SAME (2).TXT"}};
    Image image;
    std::set<std::string> lines = {"disk/\n"};
    for (const auto& [name, saved] : names) {
        image.AddFile(0, {.Name = "F", .LongName = name}, saved);
        lines.insert("disk/" + saved + "\n");
    }
    fs::create_directory(At("out"));
    Open(image);
    EXPECT_EQ(Run("folder @/out\nmenu Save Directory"), "");
    std::string tree;
    for (const std::string& line : lines) tree += line;
    EXPECT_TRUE(Same(Tree("out"), tree));
    for (const auto& [name, saved] : names) EXPECT_EQ(Read("out/disk/" + saved), saved);
}

TEST_F(WindowsTest, APathBeyond260CharactersIsReportedAndNothingIsSaved) {
    Image image;
    image.AddFile(0, {.Name = "F", .LongName = std::u16string(255, u'x')}, "long");
    image.AddFile(0, {.Name = "SHORT"}, "short");
    fs::create_directory(At("out"));
    Open(image);
    EXPECT_NE(Run("folder @/out\nmenu Save Directory"), "");
    EXPECT_EQ(Tree("out"), "disk/\ndisk/SHORT\n");
}

TEST_F(WindowsTest, HiddenAndSystemFilesAreKept) {
    Open(SampleImage());
    const std::pair<DWORD, std::string> rows[] = {{FILE_ATTRIBUTE_HIDDEN, "Error # 58"},
                                                  {FILE_ATTRIBUTE_SYSTEM, "Error # 58"}};
    for (const auto& [attribute, error] : rows) {
        Write("target", std::string("kept"));
        SetFileAttributesW(Wide("target").c_str(), attribute);
        EXPECT_NE(Save("target").find(error), std::string::npos) << error;
        SetFileAttributesW(Wide("target").c_str(), FILE_ATTRIBUTE_NORMAL);
        EXPECT_EQ(Read("target"), "kept");
    }
}

TEST_F(WindowsTest, AnImageThatAnotherProgramHoldsIsOpenedWhereThatShares) {
    constexpr DWORD kAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    Write("disk.img", SampleImage().File());
    auto held = Hold("disk.img", GENERIC_READ | GENERIC_WRITE, kAll);
    EXPECT_EQ(Run("file @/disk.img\nmenu Open\nmenu Close"), "");
    held = nullptr;
    held = Hold("disk.img", GENERIC_READ, 0);
    EXPECT_NE(Run("file @/disk.img\nmenu Open").find("Error # 70"), std::string::npos);
}

TEST_F(WindowsTest, AnImageOpensByEveryFormOfItsPath) {
    const std::string name = "\u65E5\u672C \u0416.img";  // in no code page of one byte
    Write(name, SampleImage().File());
    const std::string paths[] = {At(name), "\\\\?\\" + At(name), "\\\\.\\" + At(name), name};
    for (const std::string& path : paths) {
        EXPECT_EQ(Run("file " + path + "\nmenu Open\nshow list"),
                  ">0\t[.           ]\n4\t README  .TXT \n7\t[SUBFOL~1.   ]\n8\t BIG     .BIN \n")
            << path;
    }
    const auto open = [this](const std::string& path) {
        return Run("file " + path + "\nmenu Open");
    };
    EXPECT_NE(open("\\\\.\\pipe\\nobody").find("Error # 53"), std::string::npos);
    EXPECT_NE(open("NUL").find("Error # 75"), std::string::npos);
}

TEST_F(WindowsTest, TheDrivesAreThoseThatWindowsHas) {
    const std::vector<std::string> drives = HostDrives();
    EXPECT_NE(std::find(drives.begin(), drives.end(), "c:"), drives.end());
    EXPECT_EQ(DriveOf("C:\\Windows"), "c:");
    EXPECT_EQ(DriveOf("\\\\server\\share\\x"), "");
    EXPECT_EQ(DriveRoot("c:"), "c:\\");
}

}  // namespace
}  // namespace tessel
