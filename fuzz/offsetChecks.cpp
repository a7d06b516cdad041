#include "fuzz/offsetChecks.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "util/numberText.h"

namespace tessel {

void Require(bool isTrue, const char* what) {
    if (isTrue) return;
    (void)std::fprintf(stderr, "check failed: %s\n", what);
    std::abort();
}

void CheckOffsetLines(const std::vector<InputChoice>& lines) {
    // The whole file, 4 primaries, 128 links with 2 partitions at most, 128 KiB of GPT entries.
    constexpr std::size_t kMaxLines = 1 + 4 + 2 * 128 + 1024;
    Require(!lines.empty() && lines[0].Value == "0" && lines[0].Enabled, "0 is offered first");
    Require(lines.size() <= kMaxLines, "a bounded number of lines");
    const auto enabled = [](const InputChoice& line) { return line.Enabled; };
    Require(std::is_partitioned(lines.begin(), lines.end(), enabled), "what can be chosen first");
    for (const InputChoice& line : lines) {
        std::string value = line.Value;
        const Long offset = ParseNumber(value);
        Require(offset >= 0 || !line.Enabled, "a number that can be typed");
        Require(!line.Enabled || line.Text.starts_with(std::to_string(offset) + "   "),
                "the line says which number it is");
        Require(std::all_of(line.Text.begin(), line.Text.end(),
                            [](char c) { return static_cast<unsigned char>(c) >= 32; }),
                "no control character in a line");
    }
}

}  // namespace tessel
