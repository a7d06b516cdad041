#include "volume/dumpText.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "util/modUtility.h"

namespace tessel {
namespace {

constexpr std::int64_t kLineBytes = 16;
/// "CCCC-OOOOOOOO (" and "-OOOOOOO)" around the cluster's decimal digits.
constexpr std::int64_t kHeadWithoutDecimal = 4 + 1 + 8 + 2 + 1 + 7 + 1;
/// " HH" sixteen times, a blank, the characters, CR LF.
constexpr std::int64_t kBody = 3 * kLineBytes + 1 + kLineBytes + 2;
constexpr std::int64_t kBytesAtOnce = 64 * 1024;

std::int64_t HeadLength(Long cluster) { return kHeadWithoutDecimal + (cluster < 10000 ? 4 : 5); }

/// " HH" for every byte value; four characters each so that a copy is one move.
constexpr auto kCells = [] {
    std::array<std::array<char, 4>, 256> cells{};
    constexpr char digits[] = "0123456789ABCDEF";
    for (std::size_t i = 0; i < 256; ++i) cells[i] = {' ', digits[i >> 4], digits[i & 15], ' '};
    return cells;
}();

constexpr auto kCharacters = [] {
    std::array<char, 256> characters{};
    for (std::size_t i = 0; i < 256; ++i) {
        characters[i] = i >= 32 && i <= 126 ? static_cast<char>(i) : '.';
    }
    return characters;
}();

char* PutHex(char* to, std::uint32_t value, int width) {
    for (int i = width - 1; i >= 0; --i, value >>= 4) to[i] = "0123456789ABCDEF"[value & 15];
    return to + width;
}

char* PutDecimal(char* to, std::uint32_t value, int width) {
    for (int i = width - 1; i >= 0; --i, value /= 10) to[i] = static_cast<char>('0' + value % 10);
    return to + width;
}

char* PutHead(char* to, Long cluster, std::int64_t offset) {
    const auto number = static_cast<std::uint32_t>(cluster);
    const auto within = static_cast<std::uint32_t>(offset);
    to = PutHex(to, number, 4);
    *to++ = '-';
    to = PutHex(to, within, 8);
    *to++ = ' ';
    *to++ = '(';
    to = PutDecimal(to, number, cluster < 10000 ? 4 : 5);
    *to++ = '-';
    to = PutDecimal(to, within, 7);
    *to++ = ')';
    return to;
}

}  // namespace

DumpText::DumpText(ClusterChain chain) : Source(std::move(chain)) {
    for (const ClusterRun& run : Source.Runs()) {
        if (Source.LoopsTo() == run.Start) LoopText = LapText;
        const std::int64_t line = HeadLength(run.Cluster) + kBody;
        Segments.push_back({run.Start, LapText, line});
        LapText += run.Count * Source.BytesPerCluster() / kLineBytes * line;
    }
}

TextOffset DumpText::TextOf(std::int64_t byte) const {
    TextOffset laps = 0;
    if (Source.LoopsTo() && byte >= Source.LapBytes()) {
        const std::int64_t loop = Source.LapBytes() - *Source.LoopsTo();
        const std::int64_t inLoop = byte - *Source.LoopsTo();
        laps = inLoop / loop * (LapText - LoopText);
        byte = *Source.LoopsTo() + inLoop % loop;
    }
    const auto behind = std::upper_bound(
        Segments.begin(), Segments.end(), byte,
        [](std::int64_t value, const Segment& segment) { return value < segment.Byte; });
    const Segment& segment = *std::prev(behind);
    return laps + segment.Text + (byte - segment.Byte) / kLineBytes * segment.Line;
}

std::int64_t DumpText::ByteOf(TextOffset at) const {
    std::int64_t laps = 0;
    if (Source.LoopsTo() && at >= LapText) {
        const TextOffset loop = LapText - LoopText;
        laps = (at - LoopText) / loop * (Source.LapBytes() - *Source.LoopsTo());
        at = LoopText + (at - LoopText) % loop;
    }
    const auto behind = std::upper_bound(
        Segments.begin(), Segments.end(), at,
        [](TextOffset value, const Segment& segment) { return value < segment.Text; });
    const Segment& segment = *std::prev(behind);
    return laps + segment.Byte + (at - segment.Text) / segment.Line * kLineBytes;
}

std::int64_t DumpText::SizeOf(std::int64_t bytes) const {
    const std::int64_t rest = bytes % kLineBytes;
    const TextOffset full = TextOf(bytes - rest);
    return rest == 0 ? full : full + HeadLength(Source.At(bytes - rest).Cluster) + 3 * rest;
}

void DumpText::AppendLines(std::int64_t first, std::span<const Byte> bytes,
                           std::string& out) const {
    constexpr std::size_t kLongestLine = 96;
    const std::size_t old = out.size();
    // One character more than the lines need: a cell is put down four characters at a time.
    out.resize(old + (bytes.size() + kLineBytes - 1) / kLineBytes * kLongestLine + 1);
    char* to = out.data() + old;
    ClusterChain::Stretch at{};
    for (std::size_t i = 0; i < bytes.size(); i += kLineBytes) {
        if (at.Length <= 0) at = Source.At(first + static_cast<std::int64_t>(i));
        to = PutHead(to, at.Cluster, at.InCluster);
        const auto line = bytes.subspan(i, std::min<std::size_t>(kLineBytes, bytes.size() - i));
        for (const Byte byte : line) {
            std::memcpy(to, kCells[byte].data(), 4);
            to += 3;
        }
        if (line.size() == kLineBytes) {
            *to++ = ' ';
            for (const Byte byte : line) *to++ = kCharacters[byte];
            *to++ = '\r';
            *to++ = '\n';
        }
        at.Length -= kLineBytes;
        at.InCluster += kLineBytes;
        if (at.InCluster == Source.BytesPerCluster()) {
            at.InCluster = 0;
            ++at.Cluster;
        }
    }
    out.resize(static_cast<std::size_t>(to - out.data()));
}

void DumpText::Read(std::int64_t bytes, TextOffset at, std::size_t count, std::string& out) const {
    const std::size_t end = out.size() + count;
    std::int64_t byte = ByteOf(at);
    const std::size_t start = out.size();
    std::size_t skip = static_cast<std::size_t>(at - TextOf(byte));
    std::vector<Byte> buffer;
    while (out.size() - skip < end && byte < bytes) {
        const auto missing = static_cast<std::int64_t>(end + skip - out.size());
        const std::int64_t lines = missing / (HeadLength(0) + kBody) + 1;
        const std::int64_t wanted = std::min({lines * kLineBytes, kBytesAtOnce, bytes - byte});
        buffer.resize(static_cast<std::size_t>(wanted));
        ReadChain(Source, byte, buffer);
        AppendLines(byte, buffer, out);
        byte += wanted;
        if (skip > 0) {
            out.erase(start, skip);
            skip = 0;
        }
    }
    if (out.size() > end) out.resize(end);
}

GeneratedText DumpPiece(std::shared_ptr<const DumpText> text,
                        std::shared_ptr<const std::int64_t> bytes) {
    return {.Read = [text, bytes](TextOffset at, std::size_t count,
                                  std::string& out) { text->Read(*bytes, at, count, out); },
            .BreaksUpTo = [text](TextOffset at) { return text->ByteOf(at) / kLineBytes; },
            .BehindBreak = [text](std::int64_t n) { return text->TextOf(n * kLineBytes); }};
}

}  // namespace tessel
