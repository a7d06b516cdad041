#include "reports/dumps.h"

#include <memory>
#include <vector>

#include "util/modUtility.h"
#include "volume/bootSector.h"
#include "volume/fatEntries.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

constexpr std::size_t kPerRow = 16;
constexpr Long kEntriesPerRow = 16;
/// CR LF, 8 digits, 2 blanks, and for each byte 2 digits, a blank and its character.
constexpr std::size_t kRowLength = 2 + 8 + 2 + (3 + 1) * kPerRow;

/// `count` full rows of a dump from row `first` on, each preceded by CR LF.
std::string Rows(ByteBuffer bytes, std::size_t first, std::size_t count) {
    std::string text;
    text.reserve(count * kRowLength);
    for (std::size_t i = first * kPerRow; i < (first + count) * kPerRow; i += kPerRow) {
        text.append("\r\n").append(Hex8(static_cast<Long>(i))).append("  ");
        const ByteBuffer row = bytes.subspan(i, kPerRow);
        for (const Byte byte : row) text += Hex2(byte) + " ";
        for (const Byte byte : row) text += ByteToChar(byte);
    }
    return text;
}

/// All rows, formatted on request: a root directory has up to 131,070 of them.
GeneratedText RowsPiece(const std::shared_ptr<const PageBytes>& bytes) {
    const std::size_t rows = bytes->size() / kPerRow;
    constexpr std::int64_t length = kRowLength;
    const auto read = [bytes](TextOffset at, std::span<char> text) {
        const auto start = static_cast<std::size_t>(at);
        const std::size_t first = start / kRowLength;
        const std::size_t end = (start + text.size() + kRowLength - 1) / kRowLength;
        Rows(*bytes, first, end - first).copy(text.data(), text.size(), start % kRowLength);
    };
    return {.Size = static_cast<std::int64_t>(rows) * length,
            .LineBreaks = static_cast<std::int64_t>(rows),
            .OnlyCrLf = true,
            .Read = read,
            .BreaksUpTo = [](TextOffset at) { return (at + length - 2) / length; },
            .AfterBreak = [](std::int64_t n) { return (n - 1) * length + 2; }};
}

}  // namespace

std::string DumpBootSector() {
    return " Raw Boot Sector 0\r\n" + Rows(BootSectorBytes, 0, BootSectorBytes.size() / kPerRow) +
           "\r\n\r\n";
}

void DumpRootDirectory(TextDisplay& display) {
    display.Replace(" Raw Root Directory\r\n");
    display.Append(RowsPiece(std::make_shared<const PageBytes>(RootDirBytes)));
    display.Append("\r\n\r\n");
}

std::string DumpFat0() {
    const Long clusters = Drives[1].ClusterCount;
    const Long bits = FatTypeOf(clusters);
    const Long available = WholeFatEntries(Fat0Bytes, bits);
    std::string text;
    for (Long i = 0; i < clusters; ++i) {
        if (i >= available) {
            if (i % kEntriesPerRow != 0) text += "\r\n";
            return text + " FAT ends after " + std::to_string(available) + " of " +
                   std::to_string(clusters) + " entries\r\n";
        }
        if (i % kEntriesPerRow == 0) {
            text += Hex4(i) + " (" + Padded(i, bits == 12 ? 4 : 5) + ") ";
        }
        text += Hex4(bits == 12 ? GetFat12Entry(Fat0Bytes, i) : GetFat16Entry(Fat0Bytes, i)) + " ";
        if ((i + 1) % kEntriesPerRow == 0) text += "\r\n";
    }
    return text;
}

}  // namespace tessel
