#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "drive/script.h"
#include "tests/imageBuilder.h"

namespace tessel {

using images::Image;
using images::Layout;

/// Makes reads of the file at `path` fail like a bad medium's from byte `from` to before `to`.
void FailReads(const std::string& path, std::size_t from, std::size_t to = 1 << 30);
void StopFailingReads();

/// A case with a folder of its own as the current one, and every program-wide record as at start.
class TesselTest : public ::testing::Test {
  protected:
    TesselTest();
    ~TesselTest() override;

    /// The path of a name in the case's folder.
    std::string At(const std::string& name) const { return Folder + "/" + name; }
    std::string Write(const std::string& name, const images::Bytes& bytes) const;
    std::string Write(const std::string& name, const std::string& text) const;
    /// The content of a file in the case's folder.
    std::string Read(const std::string& name) const;
    /// What lies below a folder of the case's: sorted paths, "@" behind links, "/" behind folders.
    std::string Tree(const std::string& below) const;
    /// Brings a volume up without a window, as far as its first FAT and its root's rows.
    void Mount(const Image& image, std::size_t cutTo = SIZE_MAX) const;

    std::string Folder;

  private:
    std::filesystem::path Before;
};

/// A case with the window in front of a scripted desk. "@" in scripts and in what they print stands
/// for the case's folder.
class WindowTest : public TesselTest {
  protected:
    WindowTest() { Restart(); }

    /// Runs script lines; returns what they print, and what the script says of bad lines.
    std::string Run(const std::string& script);
    std::string Open(const Image& image, const std::string& name = "disk.img");
    std::string Show(const std::string& what) { return Run("show " + what); }
    /// A new run of the program with the same settings.
    void Restart();

    std::ostringstream Out;
    ScriptSettings Settings;
    std::unique_ptr<Script> Window;
};

/// The box for an error as a script prints it, with `more` behind its text, "|" for a line break;
/// and the one for a file that cannot be opened.
std::string ErrorBox(int number, const std::string& more = "");
std::string OpenErrorBox(int number, const std::string& name);
/// The number of the error that `step` raises, 0 for none.
int ErrorOf(const std::function<void()>& step);
/// Whether two long texts are equal; tells where the first difference is.
::testing::AssertionResult Same(const std::string& actual, const std::string& expected);
/// `text` as often as that; bytes that repeat only after a long time; the words between blanks.
std::string Times(int count, const std::string& text);
std::string Noise(std::size_t size);
std::vector<std::string> Words(const std::string& text);

/// The dump of an area, and of the bytes of a chain, put together a byte at a time.
std::string AreaDump(const std::string& title, const images::Bytes& bytes);
std::string ChainDump(const std::vector<int>& clusters, const std::string& bytes,
                      std::size_t perCluster = 512);
/// A content as the text view shows it, likewise.
std::string ContentText(const std::string& bytes);

/// A sound volume: label MYDISK; README.TXT "Hello\r\nWorld\r\n" with a long name in cluster 2; a
/// deleted file; "Sub folder" in 3 with INNER.TXT in 4, empty EMPTY, and DEEP.D in 5; BIG.BIN, 3000
/// bytes of noise in kBig.
Image SampleImage(const Layout& layout = {});
inline const std::vector<int> kBig = {20, 22, 24, 21, 26, 30};

}  // namespace tessel
