#include <cstdlib>

#include "tests/fixture.h"
#include "volume/modDisks.h"

/// Images made by other tools, and the driver as a program.
namespace tessel {
namespace {

class ToolsTest : public WindowTest {
  protected:
    /// The output of a shell command, including errors, with its exit status on the last line.
    std::string Shell(const std::string& command) const {
        const int status = std::system((command + " > printed 2>&1").c_str());
        return Read("printed") + "status " + std::to_string(status > 255 ? status >> 8 : status) +
               '\n';
    }
};

TEST_F(ToolsTest, ImagesMadeByOtherToolsAreReadCorrectly) {
    if (!Shell("which mkfs.fat mcopy mmd mdel").ends_with("status 0\n")) {
        GTEST_SKIP() << "mkfs.fat or mtools is not installed";
    }
    const std::vector<std::string> names = {"PLAIN.TXT", "A rather long name, of a file.text",
                                            "b\u00FCro \u20AC.bin"};
    for (std::size_t i = 0; i < 3; ++i) Write(names[i], Noise(70000 * i + 9));
    struct Row {
        int Bits, KiB, PerCluster;
        Long Offset;
        const char* Options = "";
    };
    for (const Row& row : {Row{12, 1440, 1, 0},
                           {12, 720, 2, 0, " -r 112 -f 1"},
                           {12, 8192, 8, 32256},
                           {16, 4400, 1, 1048576}}) {
        SCOPED_TRACE(std::to_string(row.Bits) + " bits, " + std::to_string(row.KiB) + " KiB");
        std::filesystem::current_path(Folder);
        std::filesystem::remove_all(At("out"));
        std::filesystem::create_directory(At("out"));
        const std::string offset = std::to_string(row.Offset);
        const std::string tool = " -i " + At("t.img") + "@@" + offset + " ";
        const std::string made =
            Shell("( set -e; export LC_ALL=C.UTF-8; rm -f *.img; truncate -s " +
                  std::to_string(row.KiB) + "K v.img; mkfs.fat -n LABEL -F " +
                  std::to_string(row.Bits) + " -s " + std::to_string(row.PerCluster) + row.Options +
                  " v.img; truncate -s " + offset + " t.img; cat v.img >> t.img; mmd" + tool +
                  "'::Sub folder' '::Sub folder/INNER'; mcopy" + tool + "PLAIN.TXT '" + names[1] +
                  "' ::; mcopy" + tool + "b*.bin '::Sub folder/INNER' )");
        ASSERT_TRUE(made.ends_with("status 0\n")) << made;
        EXPECT_EQ(Run("menu Close\ninput " + offset +
                      "\nmenu Offset\nfile @/t.img\nmenu Open\n"
                      "folder @/out\nmenu Save Directory"),
                  "");
        EXPECT_EQ(FatType, row.Bits);
        EXPECT_EQ(Window->Form.lblVolumeID.Caption.Get(), "{LABEL      } ");
        EXPECT_EQ(Run("double 1\ndouble 2\nfolder @/out\nmenu Save Directory"), "");
        EXPECT_EQ(Tree("out"), "t/\nt/" + names[1] +
                                   "\nt/PLAIN.TXT\nt/Sub folder/\nt/Sub folder/"
                                   "INNER/\nt/Sub folder/INNER/" +
                                   names[2] + "\n");
        EXPECT_TRUE(Same(Read("out/t/PLAIN.TXT"), Noise(9)));
        EXPECT_TRUE(Same(Read("out/t/" + names[1]), Noise(70009)));
        EXPECT_TRUE(Same(Read("out/t/Sub folder/INNER/" + names[2]), Noise(140009)));
    }
}

TEST_F(ToolsTest, TheDriverReportsBadScripts) {
    const std::string drive = TESSEL_DRIVE " --settings s ";
    Write("disk.img", SampleImage().File());
    Write("good",
          std::string("# a comment\n\nfile disk.img\r\nmenu Open\nchoose Display\nselect 1\n"
                      "show display\nmenu Exit\nnonsense"));
    EXPECT_EQ(Shell(drive + "good"), "Hello\r\nWorld\r\nstatus 0\n");
    EXPECT_EQ(Read("s"), "Paths\tIMG\t\n");
    EXPECT_EQ(Shell(drive + "gone"), "tessel-drive: cannot read gone\nstatus 2\n");
    Write("input", std::string("menu Open"));
    EXPECT_EQ(Shell(drive + "< input"),
              "tessel-drive: a file dialog with no answer queued: menu Open\nstatus 2\n");
}

}  // namespace
}  // namespace tessel
