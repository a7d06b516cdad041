#include "volume/plainText.h"

#include <algorithm>
#include <array>

#include "util/modUtility.h"

namespace tessel {
namespace {

constexpr std::int64_t kBlockBytes = std::int64_t{8} * 1024;
constexpr std::int64_t kBracketed = 4;  // "<HH>"

struct Counts {
    std::size_t Plain = 0;  // bytes shown as one character
    std::size_t Breaks = 0;
};

/// Counts in blocks that are short enough for 8-bit sums, so that the compiler can vectorise.
Counts CountBytes(std::span<const Byte> bytes) {
    Counts counts;
    constexpr std::size_t kRun = 128;
    for (std::size_t start = 0; start < bytes.size(); start += kRun) {
        const auto run = bytes.subspan(start, std::min(kRun, bytes.size() - start));
        Byte plain = 0;
        Byte breaks = 0;
        for (const Byte b : run) {
            const bool lineBreak = (b == '\r') | (b == '\n');
            const bool printable = static_cast<Byte>(b - 32) < 95;
            plain = static_cast<Byte>(plain + (printable | lineBreak | (b == '\t')));
            breaks = static_cast<Byte>(breaks + lineBreak);
        }
        counts.Plain += plain;
        counts.Breaks += breaks;
    }
    // A CR LF is one line break.
    const Byte* const at = bytes.data();
    for (std::size_t start = 0; start + 1 < bytes.size(); start += kRun) {
        const std::size_t end = std::min(start + kRun, bytes.size() - 1);
        Byte pairs = 0;
        for (std::size_t i = start; i < end; ++i) {
            pairs = static_cast<Byte>(pairs + ((at[i] == '\r') & (at[i + 1] == '\n')));
        }
        counts.Breaks -= pairs;
    }
    return counts;
}

struct Shown {
    Byte Length;
    std::array<char, 4> Text;
};

const std::array<Shown, 256>& ShownBytes() {
    static const auto table = [] {
        std::array<Shown, 256> shown{};
        for (std::size_t i = 0; i < shown.size(); ++i) {
            const std::string text = ByteToText(static_cast<Byte>(i));
            shown[i].Length = static_cast<Byte>(text.size());
            std::copy(text.begin(), text.end(), shown[i].Text.begin());
        }
        return shown;
    }();
    return table;
}

}  // namespace

void PlainText::Add(std::span<const Byte> bytes) {
    while (!bytes.empty()) {
        const std::int64_t rest = kBlockBytes - Bytes % kBlockBytes;
        const auto count = std::min<std::size_t>(bytes.size(), static_cast<std::size_t>(rest));
        AddWithinBlock(bytes.first(count));
        bytes = bytes.subspan(count);
    }
}

void PlainText::AddWithinBlock(std::span<const Byte> bytes) {
    // The CR at the end of the previous bytes is the first half of a CR LF.
    if (AfterCr && bytes.front() == '\n') --Breaks;
    if (Bytes % kBlockBytes == 0) Marks.push_back({TextSize, Breaks});
    const Counts counts = CountBytes(bytes);
    const auto plain = static_cast<std::int64_t>(counts.Plain);
    Breaks += static_cast<std::int64_t>(counts.Breaks);
    TextSize += plain + kBracketed * (static_cast<std::int64_t>(bytes.size()) - plain);
    Bytes += static_cast<std::int64_t>(bytes.size());
    AfterCr = bytes.back() == '\r';
}

std::size_t PlainText::BlockAt(TextOffset at) const {
    const auto next =
        std::upper_bound(Marks.begin(), Marks.end(), at,
                         [](TextOffset value, const Mark& mark) { return value < mark.Text; });
    return static_cast<std::size_t>(next - Marks.begin()) - 1;
}

std::string PlainText::BlockText(std::size_t block) const {
    const std::int64_t start = static_cast<std::int64_t>(block) * kBlockBytes;
    std::array<Byte, kBlockBytes> bytes{};
    const auto blockBytes =
        std::span(bytes).first(static_cast<std::size_t>(std::min(kBlockBytes, Bytes - start)));
    ReadChain(Source, start, blockBytes);

    std::string text(blockBytes.size() * kBracketed, ' ');
    char* to = text.data();
    for (const Byte byte : blockBytes) {
        const Shown& shown = ShownBytes()[byte];
        // Always copies four characters; the next byte overwrites the extra ones.
        std::copy(shown.Text.begin(), shown.Text.end(), to);
        to += shown.Length;
    }
    const TextOffset end = block + 1 < Marks.size() ? Marks[block + 1].Text : TextSize;
    const auto length = static_cast<std::size_t>(end - Marks[block].Text);
    text.resize(static_cast<std::size_t>(to - text.data()));
    text.resize(length, ' ');
    return text;
}

std::int64_t PlainText::BreaksUpTo(TextOffset at) const {
    if (Marks.empty()) return 0;
    const std::size_t block = BlockAt(at);
    const std::string text = BlockText(block);
    const auto within = static_cast<std::size_t>(at - Marks[block].Text);
    std::int64_t breaks = Marks[block].Breaks;
    for (std::size_t i = 0; i < within && i < text.size(); ++i) {
        const bool aloneCr = text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n');
        if (text[i] == '\n' || aloneCr) ++breaks;
    }
    return breaks;
}

TextOffset PlainText::AfterBreak(std::int64_t n) const {
    // The last block with fewer than n breaks before it. A CR LF that is split by the end of a
    // block counts in the second one.
    const auto next =
        std::lower_bound(Marks.begin(), Marks.end(), n,
                         [](const Mark& mark, std::int64_t value) { return mark.Breaks < value; });
    const auto block = static_cast<std::size_t>(next - Marks.begin()) - 1;
    const std::string text = BlockText(block);
    std::int64_t breaks = Marks[block].Breaks;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool aloneCr = text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n');
        if ((text[i] == '\n' || aloneCr) && ++breaks == n) {
            return Marks[block].Text + static_cast<TextOffset>(i) + 1;
        }
    }
    return Marks[block].Text + static_cast<TextOffset>(text.size());
}

void PlainText::Read(TextOffset at, std::span<char> text) const {
    if (Marks.empty()) return;
    for (std::size_t block = BlockAt(at); !text.empty() && block < Marks.size(); ++block) {
        const std::string part = BlockText(block);
        const auto from = static_cast<std::size_t>(at - Marks[block].Text);
        if (from >= part.size()) return;
        const std::size_t copied = part.copy(text.data(), text.size(), from);
        text = text.subspan(copied);
        at += static_cast<TextOffset>(copied);
    }
}

GeneratedText PlainPiece(const std::shared_ptr<const PlainText>& text) {
    return {.Read = [text](TextOffset at, std::span<char> part) { text->Read(at, part); },
            .BreaksUpTo = [text](TextOffset at) { return text->BreaksUpTo(at); },
            .AfterBreak = [text](std::int64_t n) { return text->AfterBreak(n); }};
}

}  // namespace tessel
