#include "app/textFile.h"

#include <algorithm>
#include <span>

#include "platform/host.h"
#include "platform/numberedFiles.h"

namespace tessel {
namespace {

/// A number of its own, so that the display can be saved while a copy runs.
constexpr int kTextFile = 21;

bool IsBreak(char c) { return c == '\r' || c == '\n'; }

/// Whether every line break of `text` is a CR LF already.
bool IsConverted(std::string_view text) {
    while (!text.empty()) {
        const std::size_t lf = text.find('\n');
        const std::size_t cr = text.find('\r');
        if (lf == text.npos || cr == text.npos) return lf == cr;
        if (cr + 1 != lf) return false;
        text.remove_prefix(lf + 1);
    }
    return true;
}

void Write(std::string_view text) {
    WriteFile(kTextFile, text.empty()
                             ? std::span<const Byte>{}
                             : std::span(reinterpret_cast<const Byte*>(text.data()), text.size()));
}

}  // namespace

std::string_view LineEnds::Converted(std::string_view part) {
    // Nearly every text is right as it stands, and large.
    if (!HeldCr && IsConverted(part)) return part;
    Buffer.clear();
    for (std::size_t i = 0; i < part.size();) {
        if (HeldCr) {
            HeldCr = false;
            Buffer += "\r\n";
            if (part[i] == '\n') ++i;
            continue;
        }
        const auto end =
            std::find_if(part.begin() + static_cast<std::ptrdiff_t>(i), part.end(), IsBreak);
        const auto at = static_cast<std::size_t>(end - part.begin());
        Buffer.append(part, i, at - i);
        i = at;
        if (i == part.size()) break;
        if (part[i] == '\r') {
            HeldCr = true;
        } else {
            Buffer += "\r\n";
        }
        ++i;
    }
    return Buffer;
}

std::string_view LineEnds::Rest() {
    Buffer = HeldCr ? "\r\n" : "";
    HeldCr = false;
    return Buffer;
}

void WriteTextFile(const TextDisplay& display, const std::string& path) {
    OpenForWriting(kTextFile, path);
    try {
        LineEnds ends;
        EventTurns turns;
        display.WriteTo([&](std::string_view part) {
            Write(ends.Converted(part));
            turns.Take();
        });
        Write(ends.Rest());
    } catch (...) {
        try {
            CloseFile(kTextFile);
        } catch (const RuntimeError&) {
            // The failure on the way tells more than that of the close.
        }
        throw;
    }
    CloseFile(kTextFile);
}

}  // namespace tessel
