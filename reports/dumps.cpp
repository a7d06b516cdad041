#include "reports/dumps.h"

#include <algorithm>
#include <array>

#include "util/byteCells.h"
#include "util/modUtility.h"
#include "volume/bootSector.h"
#include "volume/fatEntries.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

constexpr std::size_t kPerRow = 16;
constexpr Long kEntriesPerRow = 16;

std::string Dump(const std::string& title, ByteBuffer bytes) {
    std::string text;
    constexpr std::size_t kRowLength = 2 + 8 + 2 + 3 * kPerRow + kPerRow;
    text.reserve(title.size() + (bytes.size() / kPerRow + 3) * kRowLength);
    text += title + "\r\n";
    for (std::size_t i = 0; i < bytes.size(); i += kPerRow) {
        const ByteBuffer row = bytes.subspan(i, std::min(kPerRow, bytes.size() - i));
        text += "\r\n" + Hex8(static_cast<Long>(i)) + "  ";
        std::array<char, 4 * kPerRow> line;
        char* to = line.data();
        for (const Byte byte : row) to = std::copy_n(kByteCells[byte].data() + 1, 3, to);
        for (const Byte byte : row) *to++ = kByteCharacters[byte];
        text.append(line.data(), to);
    }
    // The first row opens a line of its own, and so does what stands behind the last.
    text += "\r\n\r\n";
    return text;
}

}  // namespace

std::string DumpBootSector() { return Dump(" Raw Boot Sector 0", BootSectorBytes); }

std::string DumpRootDirectory() { return Dump(" Raw Root Directory", RootDirBytes); }

std::string DumpFat0() {
    const Long clusters = Drives[1].ClusterCount;
    const Long bits = FatTypeOf(clusters);
    const Long held = FatEntriesHeld(Fat0Bytes, bits);
    std::string text;
    for (Long i = 0; i < clusters; ++i) {
        if (i >= held) {
            if (i % kEntriesPerRow != 0) text += "\r\n";
            return text + " FAT ends after " + std::to_string(held) + " of " +
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
