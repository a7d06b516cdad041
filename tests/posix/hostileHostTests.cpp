#include <spawn.h>
#include <sys/wait.h>

#include <chrono>

#include "tests/fixture.h"
#include "tests/posix/hostFaults.h"

extern char** environ;

/// Saving on a host that fails, and against somebody who works against it.
namespace tessel {
namespace {

namespace fs = std::filesystem;

/// What this process holds open.
std::string OpenHandles() {
    std::string all;
    for (const auto& handle : fs::directory_iterator("/proc/self/fd")) {
        std::error_code gone;  // the handle of the iterator itself
        all += handle.path().filename().string() + " " + fs::read_symlink(handle, gone).string() +
               "\n";
    }
    return all;
}

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != text.npos; at += part.size()) ++count;
    return count;
}

TEST_F(WindowTest, EveryHostCallThatFailsIsReportedAndLosesNothing) {
    Open(SampleImage());
    Run("choose Dump\nselect 3");
    const std::string dump = Show("display");
    fs::create_directory(At("first"));
    Run("folder @/first\nmenu Save Directory");  // what only the first save opens
    const std::string before = OpenHandles();
    int faults = 0;
    for (const std::string call : kHostCalls) {
        for (int nth = 1;; ++nth, ++faults) {
            SCOPED_TRACE(call + " " + std::to_string(nth));
            fs::remove_all(At("out"));
            fs::create_directories(At("out/disk"));
            Write("out/disk/BIG.BIN", std::string("old"));
            Write("out/text", std::string("old"));
            std::string boxes, shown, text;
            {
                const HostFault fault(call, nth);
                text = Run("select 3\nfile @/out/text\nmenu Save Display");
                boxes = Run("folder @/out\nmenu Save Directory");
            }
            if (!HostFault::Happened()) break;
            shown = Show("display");
            EXPECT_EQ(OpenHandles(), before);
            const std::size_t saved = Count(shown, "Saved - @"),
                              failed = Count(shown, "Failed - @");
            EXPECT_NE(shown.find("Saved - " + std::to_string(saved) + "  Failed - " +
                                 std::to_string(failed)),
                      shown.npos);
            EXPECT_LE(Count(boxes, "box\t"), 1U) << boxes;
            EXPECT_EQ(Count(boxes, "box\t") == 0, saved == 2) << boxes << shown;
            EXPECT_TRUE(saved == 0 || fs::current_path() == At("out/disk"));
            const std::string big = Read("out/disk/BIG.BIN");
            EXPECT_TRUE(big == "old" || Noise(3000).starts_with(big)) << "neither old nor new";
            if (shown.find("Saved - @/out/disk/BIG.BIN") != shown.npos) {
                EXPECT_TRUE(Same(big, Noise(3000)));
            }
            if (text.empty()) {
                EXPECT_TRUE(Same(Read("out/text"), dump));
            } else {
                EXPECT_NE(text.find("@/out/text"), text.npos) << "names the file";
                EXPECT_TRUE(Read("out/text") == "old" || dump.starts_with(Read("out/text")));
            }
            EXPECT_EQ(Tree("out").find(".tmp"), std::string::npos);
        }
    }
    EXPECT_GT(faults, 25);
}

TEST_F(WindowTest, AFolderSwappedForALinkDuringTheSaveLeadsNothingOutside) {
    Image image;
    for (int i = 0; i < 200; ++i) image.AddFile(0, {.Name = "F" + std::to_string(i)}, "inside");
    Open(image);
    fs::create_directories(At("out/disk"));
    fs::create_directory(At("outside"));
    for (int i = 0; i < 200; i += 2) Write("outside/F" + std::to_string(i), std::string("foreign"));
    const std::string before = Tree("outside");
    fs::create_directory_symlink(At("outside"), At("out/link"));
    std::string folder = At("out/disk"), link = At("out/link"), program = SWAP_FOLDER;
    std::string seconds = "2";
    char* const arguments[] = {program.data(), folder.data(), link.data(), seconds.data(), nullptr};
    pid_t attacker = 0;
    ASSERT_EQ(posix_spawn(&attacker, program.c_str(), nullptr, nullptr, arguments, environ), 0);
    std::size_t saved = 0, failed = 0;
    int status = 0;
    while (waitpid(attacker, &status, WNOHANG) == 0) {
        Run("folder @/out\nmenu Save Directory");
        const std::string shown = Show("display");
        saved += Count(shown, "Saved - @");
        failed += Count(shown, "Failed - @");
    }
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_GT(saved, 0U);
    EXPECT_GT(failed, 0U) << "it never swapped in time";
    EXPECT_EQ(Tree("outside"), before);
    for (int i = 0; i < 200; i += 2) EXPECT_EQ(Read("outside/F" + std::to_string(i)), "foreign");
}

TEST_F(WindowTest, StopEndsSaveDisplayAndWhatWouldDoNothingIsDisabled) {
    Image image;
    image.AddFile(0, {.Name = "LONG.TXT"}, std::string(1200000, 'x'));
    Open(image);
    Run("choose Dump\nselect 1");
    std::string enabled;
    Window->Desktop.OnEvents = [&] {
        if (enabled.empty())
            enabled = Run("show enabled\nmenu Open\nmenu Save Display") + Run("press STOP");
    };
    EXPECT_EQ(Run("file @/text\nmenu Save Display"),
              "box\tError\tThe text was not saved completely:\\r\\n@/text\n");
    Window->Desktop.OnEvents = nullptr;
    EXPECT_NE(enabled.find("cmdABORT\ton\n"), enabled.npos);
    EXPECT_NE(enabled.find("mnuOpen\toff\n"), enabled.npos);
    EXPECT_NE(enabled.find("disabled Open\ndisabled Save Display\n"), enabled.npos);
    EXPECT_NE(Show("enabled").find("cmdABORT\toff\n"), std::string::npos);
    EXPECT_EQ(Run("file @/text\nmenu Save Display"), "");
    EXPECT_TRUE(Same(Read("text"), Show("display")));
}

}  // namespace
}  // namespace tessel
