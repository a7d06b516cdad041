#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <numeric>
#include <sstream>

#include "drive/script.h"
#include "tests/tableBuilder.h"
#include "volume/clusterChain.h"
#include "volume/extraction.h"
#include "volume/partitionTable.h"
#include "volume/volumeState.h"

/// The program's most frequent operations, on images in a temporary folder, with a warm page cache.
namespace {

using tessel::images::Image;
using tessel::images::Layout;

constexpr std::size_t kFileBytes = 64 << 20;
constexpr int kEntries = 10000;

class Folder {
  public:
    Folder()
        : Path(std::filesystem::temp_directory_path() /
               ("tessel-benchmarks-" + std::to_string(getpid()))) {
        std::filesystem::create_directories(Path);
    }
    ~Folder() { std::filesystem::remove_all(Path); }
    std::string At(const std::string& name) const { return (Path / name).string(); }
    /// Writes the image if it does not exist yet; returns its path.
    std::string Write(const std::string& name, Image (*make)()) const {
        std::string path = At(name);
        if (std::filesystem::exists(path)) return path;
        const auto bytes = make().File();
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        return path;
    }

  private:
    std::filesystem::path Path;
};

const Folder& TheFolder() {
    static const Folder folder;
    return folder;
}

/// A text file, and a file of all byte values whose clusters are never consecutive.
Image LargeFiles() {
    Image image(Layout::Fat16(2 * static_cast<int>(kFileBytes >> 12) + 1000, 8));
    std::string content;
    for (int line = 0; content.size() < kFileBytes; ++line) {
        content += "This is line " + std::to_string(line) + " of a long text.\r\n";
    }
    content.resize(kFileBytes);
    image.AddFile(Image::kRoot, {.Name = "LARGE.TXT"}, content);
    for (std::size_t i = 0; i < content.size(); ++i) {
        content[i] = static_cast<char>(i * 2654435761U >> 13);
    }
    std::vector<int> clusters = image.Allocate(kFileBytes >> 12);
    std::reverse(clusters.begin(), clusters.end());
    image.AddFile(Image::kRoot, {.Name = "LARGE.BIN"}, content, clusters);
    return image;
}

Image ManyNames() {
    Image image(Layout::Fat16(5000, 8));
    const int directory = image.AddDirectory(Image::kRoot, {.Name = "MANY", .Attributes = 0x10});
    for (int i = 0; i < kEntries; ++i) {
        const std::string number = std::to_string(10000 + i);
        std::u16string name = u"A file with a long name, no. ";
        for (const char digit : number) name += static_cast<char16_t>(digit);
        image.Add(directory, {.Name = "FIL" + number + ".TXT", .LongName = name});
    }
    return image;
}

Image FullTables() {
    Layout layout = Layout::Fat16(65519);
    layout.RootEntries = 65535;
    Image image(layout);
    std::vector<int> clusters(65517);
    std::iota(clusters.begin(), clusters.end(), 2);
    image.Link(clusters);
    for (int i = 0; i < layout.RootEntries; ++i) {
        image.Add(Image::kRoot, {.Name = "F" + std::to_string(10000 + i) + ".TXT"});
    }
    return image;
}

Image Floppy() {
    Image image;
    for (int i = 0; i < 100; ++i) {
        image.AddFile(Image::kRoot, {.Name = "FILE" + std::to_string(i) + ".TXT"}, "Hello\r\n");
    }
    return image;
}

/// A window without a screen, with an open image.
struct Opened {
    explicit Opened(const std::string& image) : Window(Out, Out, Settings) {
        Run("file " + image + "\nmenu Open");
    }
    void Run(const std::string& lines) {
        std::istringstream script(lines);
        if (!Window.Run(script)) throw std::runtime_error(Out.str());
    }
    tessel::TextDisplay& Display() { return Window.Form.rtfDisplay.Text; }
    tessel::ListBox& List() { return Window.Form.listDIR; }

    std::ostringstream Out;
    tessel::ScriptSettings Settings;
    tessel::Script Window;
};

void CountBytes(benchmark::State& state, std::size_t each) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(each));
}

/// Line 0 of the list is the root itself, 1 the text file, 2 the binary file in scattered clusters.
void View(benchmark::State& state, const std::string& mode, int line) {
    Opened opened(TheFolder().Write("large.img", LargeFiles));
    opened.Run("choose " + mode);
    for (auto _ : state) opened.List().ClickLine(line);
    CountBytes(state, kFileBytes);
}

/// Formats the whole text of a view, as Save Display does; the rate is in bytes of the file.
void Format(benchmark::State& state, const std::string& mode, int line) {
    Opened opened(TheFolder().Write("large.img", LargeFiles));
    opened.Run("choose " + mode + "\nselect " + std::to_string(line));
    for (auto _ : state) {
        opened.Display().WriteTo(
            [](const tessel::PageText& part, bool) { benchmark::DoNotOptimize(part.data()); });
    }
    CountBytes(state, kFileBytes);
}

void OpenAndList(benchmark::State& state) {
    const std::string image = TheFolder().Write("floppy.img", Floppy);
    Opened opened(image);
    for (auto _ : state) opened.Run("file " + image + "\nmenu Open");
}

/// A disk of 2 GB, sparse on the host, with 127 logical partitions and a volume at 1 MB.
std::string LargeDisk() {
    std::string path = TheFolder().At("disk.img");
    if (std::filesystem::exists(path)) return path;
    tessel::images::Bytes disk(4 << 20);
    tessel::images::PutMbr(disk, 0, {{0, 1, 2048, 100}, {0, 5, 4096, 4096}});
    tessel::images::PutVolume(disk, 2048, "VOLUME     ");
    for (std::uint64_t i = 0; i < 127; ++i) {
        tessel::images::PutMbr(disk, 4096 + 16 * i, {{0, 1, 8, 8}, {0, 5, 16 * i + 16, 16}});
        tessel::images::PutVolume(disk, 4104 + 16 * i, "LOGICAL    ");
    }
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(disk.data()), std::ssize(disk));
    std::filesystem::resize_file(path, std::uintmax_t{2} << 30);
    return path;
}

void OpenLargeDisk(benchmark::State& state) {
    const std::string image = LargeDisk();
    Opened opened(image);
    for (auto _ : state) opened.Run("file " + image + "\nmenu Open");
}

/// Open reads the partition tables for the offset box.
void ReadTable(benchmark::State& state, bool isDisk) {
    Opened opened(isDisk ? LargeDisk() : TheFolder().Write("floppy.img", Floppy));
    for (auto _ : state) {
        benchmark::DoNotOptimize(tessel::ReadPartitionTable(tessel::kImageFile));
    }
}

void ListDirectory(benchmark::State& state) {
    Opened opened(TheFolder().Write("names.img", ManyNames));
    for (auto _ : state) {
        opened.List().DoubleClickLine(1);
        state.PauseTiming();
        opened.List().DoubleClickLine(1);  // ".."
        state.ResumeTiming();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kEntries);
}

void WalkChain(benchmark::State& state) {
    Opened opened(TheFolder().Write("full.img", FullTables));
    for (auto _ : state) {
        const tessel::ClusterChain chain(2);
        benchmark::DoNotOptimize(chain.DistinctBytes());
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * 65517);
}

void PressTable(benchmark::State& state, const std::string& caption) {
    Opened opened(TheFolder().Write("full.img", FullTables));
    for (auto _ : state) opened.Run("press " + caption);
}

void CopyFile(benchmark::State& state, int line) {
    Opened opened(TheFolder().Write("large.img", LargeFiles));
    const std::string target = TheFolder().At("copy");
    for (auto _ : state) {
        if (!tessel::SaveEntryToFile(opened.List().ItemData(line), target)) {
            state.SkipWithError("the copy failed");
        }
        state.PauseTiming();
        std::filesystem::remove(target);
        state.ResumeTiming();
    }
    CountBytes(state, kFileBytes);
}

}  // namespace

BENCHMARK(OpenAndList)->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenLargeDisk)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ReadTable, floppy, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ReadTable, disk, true)->Unit(benchmark::kMicrosecond);
BENCHMARK(ListDirectory)->Unit(benchmark::kMillisecond);
BENCHMARK(WalkChain)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(View, dump, "Dump", 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(View, dump_scattered, "Dump", 2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(View, text, "Display", 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(View, text_of_binary, "Display", 2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Format, dump, "Dump", 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Format, dump_scattered, "Dump", 2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Format, text, "Display", 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Format, text_of_binary, "Display", 2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PressTable, fat, "FAT0")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PressTable, root, "Root")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CopyFile, contiguous, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(CopyFile, scattered, 2)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
