#include "reports/dumps.h"

#include <array>

#include "util/modUtility.h"
#include "volume/bootSector.h"
#include "volume/fatEntries.h"
#include "volume/volumeState.h"

namespace tessel {
namespace {

constexpr std::size_t kPerRow = 16;
constexpr Long kEntriesPerRow = 16;

/// "HH " of every byte value, so that a row is put together by copying.
const std::array<std::string, 256>& ByteCells() {
    static const auto cells = [] {
        std::array<std::string, 256> made;
        for (std::size_t i = 0; i < made.size(); ++i) made[i] = Hex2(static_cast<Long>(i)) + " ";
        return made;
    }();
    return cells;
}

std::string Dump(const std::string& title, ByteBuffer bytes) {
    constexpr std::size_t kRowLength = 76;
    std::string text = title + "\r\n";
    text.reserve(text.size() + (bytes.size() / kPerRow + 2) * kRowLength);
    std::string characters;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % kPerRow == 0) {
            text += characters + "\r\n" + Hex8(static_cast<Long>(i)) + "  ";
            characters.clear();
        }
        characters += ByteToChar(bytes[i]);
        text += ByteCells()[bytes[i]];
    }
    return text + characters + "\r\n\r\n";
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
