#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "drive/peakMemory.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// replay FOLDER: feeds every file of a folder to the fuzz target that this is linked with. Fails
/// if the folder is empty, if one input takes more than a second of processor time, or if the
/// process needs more than 256 MB of memory.
int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    if (argc != 2) return 2;
    std::vector<fs::path> inputs;
    for (const auto& entry : fs::directory_iterator(argv[1])) inputs.push_back(entry.path());
    std::sort(inputs.begin(), inputs.end());
    double slowest = 0;
    fs::path slowestInput;
    for (const fs::path& input : inputs) {
        std::ifstream file(input, std::ios::binary);
        const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), {});
        const std::clock_t start = std::clock();
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        const double taken = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        if (taken > slowest) {
            slowest = taken;
            slowestInput = input.filename();
        }
    }
    constexpr double kMaxMegabytes = 256;
    const double peak = tessel::PeakMemoryMiB();
    std::printf("%zu inputs; the slowest, %s, took %.0f ms; %.0f MB at most\n", inputs.size(),
                slowestInput.string().c_str(), slowest * 1000, peak);
    return inputs.empty() || slowest > 1 || peak > kMaxMegabytes ? 1 : 0;
}
