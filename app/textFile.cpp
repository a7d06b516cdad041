#include "app/textFile.h"

#include <chrono>
#include <functional>
#include <future>
#include <span>
#include <utility>

#include "platform/host.h"
#include "platform/numberedFiles.h"

namespace tessel {
namespace {

/// A number of its own, so that the display can be saved while a copy runs.
constexpr int kTextFile = 21;

/// Whether every line break of `text` is a CR LF already: an LF stands behind each CR, and nowhere
/// else. Told without a branch, so that the compiler can take many characters at once.
bool IsConverted(std::string_view text) {
    if (text.empty()) return true;
    if (text.front() == '\n' || text.back() == '\r') return false;
    unsigned char wrong = 0;
    for (std::size_t i = 1; i < text.size(); ++i) {
        const bool behindCr = text[i - 1] == '\r';
        wrong |= static_cast<unsigned char>(behindCr != (text[i] == '\n'));
    }
    return wrong == 0;
}

/// Writes one part while the next is made: a dump is made about as fast as a disk cache takes it.
/// Lets events in, also while a disk makes it wait.
class PartWriter {
  public:
    /// `size` is that of all parts, in bytes.
    explicit PartWriter(std::int64_t size) : Shown(size), Put(WriterOf(kTextFile)) {}

    /// Takes `part` and leaves some other text in its place. Raises what writing the part before it
    /// raised.
    void Write(std::string& part) {
        Events.Process();
        Finish();
        Shown.Show(Taken);
        Held.swap(part);
        Taken += std::ssize(Held);
        if (Held.size() < kWorthAThread) {
            PutHeld();
        } else {
            Written = std::async([this] { PutHeld(); });
        }
    }

    /// Returns when all is written. Raises what writing raised.
    void Finish() {
        if (!Written.valid()) return;
        while (Written.wait_for(kWait) == std::future_status::timeout) Events.Process();
        Written.get();
    }

  private:
    static constexpr std::chrono::milliseconds kWait{8};
    static constexpr std::size_t kWorthAThread = std::size_t{256} * 1024;

    void PutHeld() { Put({reinterpret_cast<const Byte*>(Held.data()), Held.size()}); }

    EventPump Events;
    Progress Shown;
    std::int64_t Taken = 0;
    std::function<void(std::span<const Byte>)> Put;
    std::string Held;
    std::future<void> Written;  // waits on its way out, in front of what it reads
};

}  // namespace

void LineEnds::Convert(std::string& part, bool onlyCrLf) {
    // Nearly every text is right as it stands, and large.
    if (!HeldCr && (onlyCrLf || IsConverted(part))) return;
    std::string converted;
    converted.reserve(part.size() + 2);
    for (const char c : part) {
        if (HeldCr) {
            converted += "\r\n";
            HeldCr = false;
            if (c == '\n') continue;
        }
        if (c == '\r') {
            HeldCr = true;
        } else if (c == '\n') {
            converted += "\r\n";
        } else {
            converted += c;
        }
    }
    part = std::move(converted);
}

std::string LineEnds::Rest() { return std::exchange(HeldCr, false) ? "\r\n" : ""; }

bool WriteTextFile(const TextDisplay& display, const std::string& path, const bool& stop) {
    struct Stopped {};
    OpenForWriting(kTextFile, path);
    try {
        LineEnds ends;
        PartWriter file(display.Size());
        display.WriteTo([&](std::string& part, bool onlyCrLf) {
            if (stop) throw Stopped();
            ends.Convert(part, onlyCrLf);
            file.Write(part);
        });
        std::string rest = ends.Rest();
        file.Write(rest);
        file.Finish();
    } catch (const Stopped&) {
        CloseFile(kTextFile);
        return false;
    } catch (...) {
        try {
            CloseFile(kTextFile);
        } catch (const RuntimeError&) {
            // The failure on the way tells more than that of the close.
        }
        throw;
    }
    CloseFile(kTextFile);
    return true;
}

}  // namespace tessel
