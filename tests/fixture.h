#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "drive/script.h"
#include "tests/hostTools.h"
#include "tests/imageBuilder.h"

namespace tessel {

using images::Image;
using images::Layout;

/// A test in a temporary folder, which is the current one, with all global state as at program
/// start.
class TesselTest : public ::testing::Test {
  protected:
    TesselTest();
    ~TesselTest() override;

    /// The path of a name in the test's folder, with the host's separators.
    std::string At(const std::string& name) const;
    std::string Write(const std::string& name, const images::Bytes& bytes) const;
    std::string Write(const std::string& name, const std::string& text) const;
    /// The content of a file in the test's folder.
    std::string Read(const std::string& name) const;
    /// The content of a folder in the test's folder: sorted paths, "@" after links, "/" after
    /// folders.
    std::string Tree(const std::string& below) const;
    /// Opens a volume without a window: loads the boot sector, the first FAT and the root
    /// directory.
    void Mount(const Image& image, std::size_t cutTo = SIZE_MAX) const;

    std::string Folder;

  private:
    std::filesystem::path Before;
};

/// A test with the window on a scripted desktop. "@" in scripts and in their output stands for the
/// test's folder.
class WindowTest : public TesselTest {
  protected:
    WindowTest() { Restart(); }

    /// Runs script lines; returns their output, including the messages about bad lines.
    std::string Run(const std::string& script);
    std::string Open(const Image& image, const std::string& name = "disk.img");
    std::string Show(const std::string& what) { return Run("show " + what); }
    /// Starts the program anew, with the same settings.
    void Restart();

    std::ostringstream Out;
    ScriptSettings Settings;
    std::unique_ptr<Script> Window;
};

/// The error box as a script prints it, with `more` after its text, where "|" is a line break; and
/// the one for a file that cannot be opened.
std::string ErrorBox(int number, const std::string& more = "");
std::string OpenErrorBox(int number, const std::string& name, const std::string& cause = "");
/// The last line of each box of Save Directory.
inline const std::string kAlike = "|Other files with this error are only listed.";
/// The number of the error that `step` raises, 0 for none.
int ErrorOf(const std::function<void()>& step);
/// Whether two long texts are equal; on failure, reports the first difference.
::testing::AssertionResult Same(const std::string& actual, const std::string& expected);
/// `text` repeated; pseudo-random bytes, always the same; the words of a text.
std::string Times(int count, const std::string& text);
std::string Noise(std::size_t size);
std::vector<std::string> Words(const std::string& text);

/// The expected dump of an area, and of a file's bytes in a chain, written independently of the
/// program.
std::string AreaDump(const std::string& title, const images::Bytes& bytes);
std::string ChainDump(const std::vector<int>& clusters, const std::string& bytes,
                      std::size_t perCluster = 512);
/// The expected text view of a file's bytes.
std::string ContentText(const std::string& bytes);

/// A valid volume: label MYDISK; README.TXT "Hello\r\nWorld\r\n" with a long name in cluster 2; a
/// deleted file; "Sub folder" in 3 with INNER.TXT in 4, empty EMPTY, and DEEP.D in 5; BIG.BIN, 3000
/// bytes of noise in kBig.
Image SampleImage(const Layout& layout = {});
inline const std::vector<int> kBig = {20, 22, 24, 21, 26, 30};

}  // namespace tessel
