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

/// Whether every line break of `text` is a CR LF already: an LF follows each CR and appears nowhere
/// else. The loop has no branch, so that the compiler can vectorise it.
bool IsConverted(std::string_view text) {
    if (text.empty()) return true;
    if (text.front() == '\n' || text.back() == '\r') return false;
    unsigned char wrong = 0;
    for (std::size_t i = 1; i < text.size(); ++i) {
        const bool afterCr = text[i - 1] == '\r';
        wrong |= static_cast<unsigned char>(afterCr != (text[i] == '\n'));
    }
    return wrong == 0;
}

/// Writes one part on a second thread while the caller generates the next: a dump is generated
/// about as fast as the disk cache accepts it. Pending events are processed while it waits.
class PartWriter {
  public:
    /// `size` is the size of all parts together, in bytes.
    explicit PartWriter(std::int64_t size) : Shown(size), Writer(WriterOf(kTextFile)) {}

    /// Takes over the content of `part`, which is unspecified afterwards. Raises the error of
    /// writing the previous part.
    void Write(PageText& part) {
        Events.Process();
        Finish();
        Shown.Show(Accepted);
        Buffer.swap(part);
        Accepted += std::ssize(Buffer);
        if (Buffer.size() < kThreadThreshold) {
            WriteBuffer();
        } else {
            Pending = std::async([this] { WriteBuffer(); });
        }
    }

    /// Returns when every part is written. Raises the error of writing the last one.
    void Finish() {
        if (!Pending.valid()) return;
        while (Pending.wait_for(kWait) == std::future_status::timeout) Events.Process();
        Pending.get();
    }

  private:
    static constexpr std::chrono::milliseconds kWait{8};
    static constexpr std::size_t kThreadThreshold = std::size_t{256} * 1024;

    void WriteBuffer() { Writer({reinterpret_cast<const Byte*>(Buffer.data()), Buffer.size()}); }

    EventPump Events;
    Progress Shown;
    std::int64_t Accepted = 0;  // bytes
    std::function<void(std::span<const Byte>)> Writer;
    PageText Buffer;
    std::future<void> Pending;  // last: its destructor waits for the thread that reads Buffer
};

}  // namespace

void LineEnds::Convert(PageText& part, bool onlyCrLf) {
    // Most texts need no conversion, and they are large.
    if (!PendingCr && (onlyCrLf || IsConverted({part.data(), part.size()}))) return;
    PageText converted;
    converted.reserve(part.size() + 2);
    const auto endLine = [&converted] { converted.insert(converted.end(), {'\r', '\n'}); };
    for (const char c : part) {
        if (PendingCr) {
            endLine();
            PendingCr = false;
            if (c == '\n') continue;
        }
        if (c == '\r') {
            PendingCr = true;
        } else if (c == '\n') {
            endLine();
        } else {
            converted.push_back(c);
        }
    }
    part = std::move(converted);
}

PageText LineEnds::Rest() {
    return std::exchange(PendingCr, false) ? PageText{'\r', '\n'} : PageText{};
}

bool WriteTextFile(const TextDisplay& display, const bool& stop) {
    struct Stopped {};
    try {
        LineEnds ends;
        PartWriter file(display.Size());
        display.WriteTo([&](PageText& part, bool onlyCrLf) {
            if (stop) throw Stopped();
            ends.Convert(part, onlyCrLf);
            file.Write(part);
        });
        PageText rest = ends.Rest();
        file.Write(rest);
        file.Finish();
    } catch (const Stopped&) {
        CloseFile(kTextFile);
        return false;
    } catch (...) {
        AbandonFile(kTextFile);
        throw;
    }
    CloseFile(kTextFile);
    return true;
}

}  // namespace tessel
