#include "volume/dumpText.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/pageBytes.h"

namespace tessel {
namespace {

constexpr std::int64_t kLineBytes = 16;
/// "CCCC-OOOOOOOO (" and "-OOOOOOO)", before and after the decimal digits of the cluster.
constexpr std::int64_t kHeadWithoutDecimal = 4 + 1 + 8 + 2 + 1 + 7 + 1;
/// " HH" 16 times, a blank, 16 characters, CR LF.
constexpr std::int64_t kBody = 3 * kLineBytes + 1 + kLineBytes + 2;
constexpr std::int64_t kBytesAtOnce = std::int64_t{64} * 1024;

std::int64_t HeadLength(Long cluster) { return kHeadWithoutDecimal + (cluster < 10000 ? 4 : 5); }

/// " HH " and the character for each byte value. A dump that computes each digit, and each line
/// head from the start, takes 2.6 times as long.
constexpr auto kByteCells = [] {
    std::array<std::array<char, 4>, 256> cells{};
    constexpr char digits[] = "0123456789ABCDEF";
    for (std::size_t i = 0; i < 256; ++i) cells[i] = {' ', digits[i >> 4], digits[i & 15], ' '};
    return cells;
}();
constexpr auto kByteCharacters = [] {
    std::array<char, 256> characters{};
    for (std::size_t i = 0; i < 256; ++i) {
        characters[i] = i >= 32 && i <= 126 ? static_cast<char>(i) : '.';
    }
    return characters;
}();

char* PutHex2(char* to, std::uint32_t value) {
    std::memcpy(to, kByteCells[value & 255].data() + 1, 2);
    return to + 2;
}

char* PutHex4(char* to, std::uint32_t value) { return PutHex2(PutHex2(to, value >> 8), value); }

void PutDecimal(char* to, std::uint32_t value, int digits) {
    for (int i = digits; i-- > 0; value /= 10) to[i] = static_cast<char>('0' + value % 10);
}

/// The head of the lines of one cluster, "CCCC-OOOOOOOO (DDDD-OOOOOOO)". Only the offset changes
/// from line to line.
class LineHead {
  public:
    explicit LineHead(Long cluster) {
        const auto number = static_cast<std::uint32_t>(cluster);
        Text.fill('0');
        PutHex4(Text.data(), number);
        Text[4] = '-';
        std::memcpy(Text.data() + 13, " (", 2);
        PutDecimal(Text.data() + 15, number, number < 10000 ? 4 : 5);
        Length = static_cast<std::size_t>(HeadLength(cluster));
        Text[Length - 9] = '-';
        Text[Length - 1] = ')';
    }

    /// Writes the head with `offset` to `to` and returns its end. Overwrites kCapacity characters.
    char* Put(char* to, std::int64_t offset) const {
        const auto within = static_cast<std::uint32_t>(offset);
        // The digits are written to the copy: writing them to Text and then copying it would stall
        // on store forwarding.
        std::memcpy(to, Text.data(), kCapacity);
        PutHex4(PutHex4(to + 5, within >> 16), within);
        PutDecimal(to + Length - 8, within, 7);
        return to + Length;
    }

    static constexpr std::size_t kCapacity = 32;

  private:
    std::array<char, kCapacity> Text;
    std::size_t Length;
};

/// Writes the cells to `to` and returns their end. Overwrites one character more, because a cell is
/// copied as four characters.
char* PutCells(char* to, std::span<const Byte> bytes) {
    for (const Byte byte : bytes) {
        std::memcpy(to, kByteCells[byte].data(), 4);
        to += 3;
    }
    return to;
}

/// Writes a full line without its head. The fixed length lets the compiler unroll the loops.
char* PutBody(char* to, std::span<const Byte, kLineBytes> bytes) {
    for (std::size_t i = 0; i < kLineBytes; ++i) {
        std::memcpy(to + 3 * i, kByteCells[bytes[i]].data(), 4);
    }
    to += 3 * kLineBytes;
    *to++ = ' ';
    for (std::size_t i = 0; i < kLineBytes; ++i) to[i] = kByteCharacters[bytes[i]];
    to += kLineBytes;
    *to++ = '\r';
    *to++ = '\n';
    return to;
}

}  // namespace

DumpText::DumpText(ClusterChain chain) : Source(std::move(chain)) {
    for (const ClusterRun& run : Source.Runs()) {
        if (Source.LoopTarget() == run.Start) LoopText = DistinctText;
        const std::int64_t line = HeadLength(run.Cluster) + kBody;
        Segments.push_back({run.Start, DistinctText, line});
        DistinctText += run.Count * Source.BytesPerCluster() / kLineBytes * line;
    }
}

TextOffset DumpText::TextOf(std::int64_t byte) const {
    TextOffset passes = 0;
    if (Source.LoopTarget() && byte >= Source.DistinctBytes()) {
        const std::int64_t loop = Source.DistinctBytes() - *Source.LoopTarget();
        const std::int64_t inLoop = byte - *Source.LoopTarget();
        passes = inLoop / loop * (DistinctText - LoopText);
        byte = *Source.LoopTarget() + inLoop % loop;
    }
    const auto next = std::upper_bound(
        Segments.begin(), Segments.end(), byte,
        [](std::int64_t value, const Segment& segment) { return value < segment.Byte; });
    const Segment& segment = *std::prev(next);
    return passes + segment.Text + (byte - segment.Byte) / kLineBytes * segment.Line;
}

std::int64_t DumpText::ByteOf(TextOffset at) const {
    std::int64_t passes = 0;
    if (Source.LoopTarget() && at >= DistinctText) {
        const TextOffset loop = DistinctText - LoopText;
        passes = (at - LoopText) / loop * (Source.DistinctBytes() - *Source.LoopTarget());
        at = LoopText + (at - LoopText) % loop;
    }
    const auto next = std::upper_bound(
        Segments.begin(), Segments.end(), at,
        [](TextOffset value, const Segment& segment) { return value < segment.Text; });
    const Segment& segment = *std::prev(next);
    return passes + segment.Byte + (at - segment.Text) / segment.Line * kLineBytes;
}

std::int64_t DumpText::SizeOf(std::int64_t bytes) const {
    const std::int64_t rest = bytes % kLineBytes;
    const TextOffset full = TextOf(bytes - rest);
    return rest == 0 ? full : full + HeadLength(Source.ExtentAt(bytes - rest).Cluster) + 3 * rest;
}

/// Collects the wanted part of a text that is formatted in whole lines.
class DumpText::Excerpt {
  public:
    /// Skips the first `skipped` characters and then fills `wanted`.
    Excerpt(std::size_t skipped, std::span<char> wanted) : Skipped(skipped), Missing(wanted) {}

    void Add(std::string_view text) {
        const std::size_t first = std::min(Skipped, text.size());
        Skipped -= first;
        Missing = Missing.subspan(text.copy(Missing.data(), Missing.size(), first));
    }
    /// The number of characters still to be added.
    std::size_t Rest() const { return Missing.empty() ? 0 : Skipped + Missing.size(); }

  private:
    std::size_t Skipped;
    std::span<char> Missing;
};

void DumpText::FormatLines(std::int64_t first, std::span<const Byte> bytes,
                           Excerpt& excerpt) const {
    constexpr std::size_t kLongestLine = 96;
    constexpr std::size_t kLinesAtOnce = 64;
    // Larger than the lines: the functions above overwrite characters past the end.
    std::array<char, kLinesAtOnce * kLongestLine + LineHead::kCapacity> lines;
    char* to = lines.data();
    std::size_t lineCount = 0;
    while (!bytes.empty()) {
        const ClusterChain::Extent at = Source.ExtentAt(first);
        const LineHead head(at.Cluster);
        std::int64_t inCluster = at.InCluster;
        while (inCluster < Source.BytesPerCluster() && !bytes.empty()) {
            const auto line = bytes.first(std::min<std::size_t>(kLineBytes, bytes.size()));
            to = head.Put(to, inCluster);
            to = line.size() == kLineBytes ? PutBody(to, line.first<kLineBytes>())
                                           : PutCells(to, line);
            bytes = bytes.subspan(line.size());
            first += kLineBytes;
            inCluster += kLineBytes;
            if (++lineCount == kLinesAtOnce || bytes.empty()) {
                excerpt.Add({lines.data(), to});
                to = lines.data();
                lineCount = 0;
            }
        }
    }
}

void DumpText::Read(std::int64_t bytes, TextOffset at, std::span<char> text) const {
    std::int64_t byte = ByteOf(at);
    Excerpt excerpt(static_cast<std::size_t>(at - TextOf(byte)), text);
    PageBytes buffer;
    while (excerpt.Rest() > 0 && byte < bytes) {
        const auto lines = static_cast<std::int64_t>(excerpt.Rest()) / (HeadLength(0) + kBody) + 1;
        const std::int64_t wanted = std::min({lines * kLineBytes, kBytesAtOnce, bytes - byte});
        buffer.resize(static_cast<std::size_t>(wanted));
        ReadChain(Source, byte, buffer);
        FormatLines(byte, buffer, excerpt);
        byte += wanted;
    }
}

GeneratedText DumpPiece(const std::shared_ptr<const DumpText>& text,
                        const std::shared_ptr<const std::int64_t>& bytes) {
    return {.OnlyCrLf = true,
            .Read = [text, bytes](TextOffset at,
                                  std::span<char> part) { text->Read(*bytes, at, part); },
            .BreaksUpTo = [text](TextOffset at) { return text->ByteOf(at) / kLineBytes; },
            .AfterBreak = [text](std::int64_t n) { return text->TextOf(n * kLineBytes); }};
}

}  // namespace tessel
