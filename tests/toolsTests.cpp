#include <cstdlib>
#include <fstream>

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

TEST_F(ToolsTest, PartitionTablesMadeByOtherToolsOfferTheirVolumes) {
    const std::string start = "(set -e; PATH=$PATH:/sbin:/usr/sbin; rm -f *.img; ";
    if (!Shell(start + "which sfdisk parted)").ends_with("status 0\n")) {
        GTEST_SKIP() << "sfdisk or parted is not installed";
    }
    const auto put = [this](const std::string& label, int sector) {
        Image image;
        image.Poke(43, label);
        std::fstream file(At("disk.img"), std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(std::int64_t{sector} * 512);
        file.write(reinterpret_cast<const char*>(image.Volume.data()), std::ssize(image.Volume));
    };
    EXPECT_EQ(Shell(start +
                    "truncate -s 9G disk.img; printf 'label: dos\\nstart=40960,size=4096,type=83\\n"
                    "start=2048,size=4096,type=1\\nstart=61440,size=10000000,type=f\\n"
                    "start=12000000,size=4096,type=6\\nstart=65536,size=4096,type=1\\n"
                    "start=73728,size=4096,type=b\\nstart=81920,size=4096,type=1\\n"
                    "start=9000000,size=4096,type=6\\n' | "
                    "sfdisk -q disk.img)"),
              "status 0\n");
    put("FIRST      ", 2048);
    put("LOGICAL ONE", 65536);
    put("LOGICAL 2  ", 81920);
    EXPECT_EQ(Run("file @/disk.img\nmenu Open\nmenu Close\nshow offsets"),
              "0   whole file\n1048576   FAT12   2.0 MB   FIRST\n"
              "33554432   FAT12   2.0 MB   LOGICAL ONE\n41943040   FAT12   2.0 MB   LOGICAL 2\n"
              "20971520   Linux, not supported   2.0 MB\toff\n"
              "37748736   FAT32, no FAT boot sector   2.0 MB\toff\n"
              "4606951424   extended, past the first 2 GB   3.0 MB   "
              "dd if=disk.img of=part.img bs=512 skip=8997952 count=6144\toff\n"
              "6144000000   FAT16, past the first 2 GB   2.0 MB   "
              "dd if=disk.img of=part.img bs=512 skip=12000000 count=4096\toff\n");

    const std::string made =
        Shell(start +
              "truncate -s 5G 'a b.img'; parted -s 'a b.img' mklabel gpt mkpart "
              "'\"EFI system\"' fat16 1MiB 3MiB mkpart '\"K\u00F6ln\"' ext4 512MiB "
              "514MiB mkpart late fat16 600MiB 602MiB mkpart later fat16 900MiB "
              "902MiB mkpart last fat16 3000MiB 3002MiB; mv 'a b.img' disk.img)");
    ASSERT_TRUE(made.ends_with("status 0\n")) << made;
    put("EFI        ", 2048);
    put("LATE       ", 600 * 2048);
    put("LATER      ", 900 * 2048);
    std::filesystem::rename(At("disk.img"), At("a b.img"));
    EXPECT_EQ(Run("file @/a b.img\nmenu Open\nmenu Close\nshow offsets"),
              "0   whole file\n1048576   FAT12   2.0 MB   EFI   \"EFI system\"\n"
              "629145600   FAT12   2.0 MB   LATE   \"late\"   past 536870919: enter it in "
              "hexadecimal, or "
              "dd if='a b.img' of=part.img bs=512 skip=1228800 count=4096\n"
              "536870912   no FAT boot sector   2.0 MB   \"K\u00F6ln\"\toff\n"
              "943718400   FAT12   2.0 MB   LATER   \"later\"   past 536870919: "
              "dd if='a b.img' of=part.img bs=512 skip=1843200 count=4096\toff\n"
              "3145728000   past the first 2 GB   2.0 MB   \"last\"   "
              "dd if='a b.img' of=part.img bs=512 skip=6144000 count=4096\toff\n");
    for (const InputChoice& line : Window->Form.OffsetChoices()) {
        if (!line.Enabled || line.Value == "0") continue;
        EXPECT_EQ(Run("input " + line.Value + "\nmenu Offset\nfile @/a b.img\nmenu Open"), "");
        EXPECT_EQ(Window->Form.lblVolumeID.Caption.Get(), line.Value == "1048576" ? "EFI" : "LATE");
        Run("menu Close");
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
