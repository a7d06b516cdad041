#include "tests/fixture.h"

#include <algorithm>
#include <fstream>
#include <random>

#include "dialogs/modFile.h"
#include "drive/resetVolume.h"
#include "platform/hostFiles.h"
#include "platform/numberedFiles.h"
#include "volume/modDisks.h"

namespace tessel {
namespace fs = std::filesystem;

static std::string Replaced(std::string text, const std::string& what, const std::string& by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += by.size()) {
        text.replace(at, what.size(), by);
    }
    return text;
}

/// Replaces the separators `from` by `to` in each path, which is from `start` to the end of its
/// line.
static std::string WithSeparators(std::string text, const std::string& start, char from, char to) {
    bool inPath = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, start.size(), start) == 0) inPath = true;
        // In the output for a message box, a line break is these four characters.
        if (text[i] == '\n' || text.compare(i, 4, "\\r\\n") == 0) inPath = false;
        if (inPath && text[i] == from) text[i] = to;
    }
    return text;
}

/// Creates a new folder in the host's folder for temporary files.
static std::string MakeFolder() {
    std::random_device random;
    for (;;) {
        const fs::path path = fs::temp_directory_path() / ("tessel-" + std::to_string(random()));
        if (fs::create_directory(path)) return path.string();
    }
}

TesselTest::TesselTest() : Before(fs::current_path()) {
    Folder = MakeFolder();
    fs::current_path(Folder);
    ResetVolume();
    RecentPaths = {};
    TheHost = {};
    TheHost.DoEvents = [] {};
}

TesselTest::~TesselTest() {
    StopFailingReads();
    ResetVolume();
    TheHost = {};
    fs::current_path(Before);
    std::error_code ignored;
    fs::remove_all(Folder, ignored);
}

std::string TesselTest::At(const std::string& name) const {
    return Folder + WithSeparators("/" + name, "/", '/', FolderSeparator());
}

std::string TesselTest::Write(const std::string& name, const images::Bytes& bytes) const {
    std::ofstream(At(name), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
    return At(name);
}

std::string TesselTest::Write(const std::string& name, const std::string& text) const {
    return Write(name, images::Bytes(text.begin(), text.end()));
}

std::string TesselTest::Read(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(At(name), std::ios::binary).rdbuf();
    return text.str();
}

std::string TesselTest::Tree(const std::string& below) const {
    std::vector<std::string> paths;
    for (const auto& entry : fs::recursive_directory_iterator(At(below))) {
        const char* mark = entry.is_symlink() ? "@\n" : entry.is_directory() ? "/\n" : "\n";
        paths.push_back(entry.path().lexically_relative(At(below)).generic_string() + mark);
    }
    std::sort(paths.begin(), paths.end());
    std::string tree;
    for (const std::string& path : paths) tree += path;
    return tree;
}

void TesselTest::Mount(const Image& image, std::size_t cutTo) const {
    images::Bytes file = image.File();
    file.resize(std::min(cutTo, file.size()));
    CloseFile(kImageFile);
    Drives[1].FileNumber = kImageFile;
    OpenForReading(kImageFile, Write("mounted.img", file));
    SetDriveGeometry(1);
    Drives[1].IsOpen = ReadBootSector();
    ParseBootSector();
    Label label;
    SetFatType(FatTypeOf(Drives[1].ClusterCount), label);
    ReadRootDirectory();
    ReadFat0();
    ClearDirEntries();
    LoadRootDirectory();
    AttachLongNames();
}

void WindowTest::Restart() {
    if (Window) Window->Finish();
    Window = std::make_unique<Script>(Out, Out, Settings);
}

std::string WindowTest::Run(const std::string& script) {
    const char host = FolderSeparator();
    std::istringstream lines(Replaced(WithSeparators(script, "@", '/', host), "@", Folder));
    std::ostringstream before(std::exchange(Out, std::ostringstream()));
    Window->Run(lines);
    std::string printed = WithSeparators(Replaced(Out.str(), Folder, "@"), "@", host, '/');
    Out = std::move(before);  // the output of an outer script that is processing events
    return printed;
}

std::string WindowTest::Open(const Image& image, const std::string& name) {
    Write(name, image.File());
    return Run("file @/" + name + "\nmenu Open\n");
}

std::string ErrorBox(int number, const std::string& more) {
    const std::map<int, std::string> texts = {{6, "Overflow"},
                                              {53, "File not found"},
                                              {55, "File already open"},
                                              {57, "Device I/O error"},
                                              {58, "File already exists"},
                                              {61, "Disk full"},
                                              {75, "Path/File access error"},
                                              {76, "Path not found"}};
    const std::string text = "Error # " + std::to_string(number) + " was generated by projTessel|" +
                             texts.at(number) + more;
    return "box\tError\t" + Replaced(text, "|", "\\r\\n") + "\n";
}

std::string OpenErrorBox(int number, const std::string& name, const std::string& cause) {
    const std::string share =
        "This may be caused by a defect of the platform's file layer that prevents opening files "
        "on a network share that is not marked as FULL control in MS windows NT and later!|"
        "The network share MUST be Read and Writable (FULL control) even if you open the file as "
        "R/O";
    const std::string hint = number == 75 ? share : "File may be Hidden or System";
    return ErrorBox(number, "|" + hint + "|@/" + name + (cause.empty() ? "" : "|" + cause));
}

int ErrorOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const RuntimeError& error) {
        return error.Number;
    }
    return 0;
}

::testing::AssertionResult Same(const std::string& actual, const std::string& expected) {
    if (actual == expected) return ::testing::AssertionSuccess();
    const auto at = static_cast<std::size_t>(
        std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end()).first -
        actual.begin());
    return ::testing::AssertionFailure()
           << "lengths " << actual.size() << " and " << expected.size() << ", at " << at << ": "
           << ::testing::PrintToString(actual.substr(at, 90)) << "\ninstead of "
           << ::testing::PrintToString(expected.substr(at, 90));
}

std::string Times(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

std::string Noise(std::size_t size) {
    std::string bytes(size, ' ');
    std::uint32_t state = 1;
    for (char& c : bytes) c = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    return bytes;
}

std::vector<std::string> Words(const std::string& text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

static std::string Hex(std::size_t value, int digits) {
    std::string text;
    while (digits-- > 0) text += "0123456789ABCDEF"[value >> 4 * digits & 15];
    return text;
}

static char Shown(unsigned char byte) {
    return byte >= 32 && byte < 127 ? static_cast<char>(byte) : '.';
}

std::string AreaDump(const std::string& title, const images::Bytes& bytes) {
    std::string text = title + "\r\n";
    for (std::size_t i = 0; i < bytes.size(); i += 16) {
        text += "\r\n" + Hex(i, 8) + "  ";
        for (std::size_t k = i; k < i + 16; ++k) text += Hex(bytes[k], 2) + " ";
        for (std::size_t k = i; k < i + 16; ++k) text += Shown(bytes[k]);
    }
    return text + "\r\n\r\n";
}

std::string ChainDump(const std::vector<int>& clusters, const std::string& bytes,
                      std::size_t perCluster) {
    std::string text, column;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        const std::size_t k = i % perCluster;
        const auto c = static_cast<std::size_t>(clusters[i / perCluster]);
        if (k % 16 == 0) {
            const std::string decimal = std::to_string(c), offset = std::to_string(k);
            text += Hex(c, 4) + "-" + Hex(k, 8) + " (" +
                    std::string(4 - std::min<std::size_t>(4, decimal.size()), '0') + decimal + "-" +
                    std::string(7 - offset.size(), '0') + offset + ")";
        }
        text += " " + Hex(byte, 2);
        column += Shown(byte);
        if (k % 16 == 15) text += " " + std::exchange(column, "") + "\r\n";
    }
    return text;
}

std::string ContentText(const std::string& bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (c >= 32 && c < 127) || c == '\t' || c == '\n' || c == '\r';
        text += plain ? std::string(1, c) : "<" + Hex(byte, 2) + ">";
    }
    return text;
}

Image SampleImage(const Layout& layout) {
    Image image(layout);
    image.Add(0, {.Name = "MYDISK     ", .Attributes = 8});
    image.AddFile(0, {.Name = "README.TXT", .LongName = u"Read me first.txt"},
                  "Hello\r\nWorld\r\n");
    image.Add(0, {.Name = "\xE5"
                          "ELETED TXT",
                  .Cluster = 9,
                  .Size = 9});
    const int sub = image.AddDirectory(0, {.Name = "SUBFOL~1", .LongName = u"Sub folder"});
    image.AddFile(sub, {.Name = "INNER.TXT"}, "inside\n");
    image.AddFile(sub, {.Name = "EMPTY"}, "");
    image.AddDirectory(sub, {.Name = "DEEP.D"});
    image.AddFile(0, {.Name = "BIG.BIN"}, Noise(3000), kBig);
    return image;
}

}  // namespace tessel
