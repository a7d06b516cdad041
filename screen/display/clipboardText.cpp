#include "screen/display/clipboardText.h"

#include <QStringDecoder>
#include <algorithm>
#include <string>

namespace tessel {
namespace {

/// Bytes decoded at a time.
constexpr std::int64_t kCopyPart = 1 << 18;

}  // namespace

QString ClipboardText(const TextDisplay& text, TextRange range) {
    QString lines;
    lines.reserve(range.Size());
    // In parts, because first use of memory dominates the cost. A part may end within a character.
    QStringDecoder decode(QStringDecoder::Utf8);
    std::string part;
    bool afterCr = false;
    for (TextOffset at = range.From; at < range.To; at += kCopyPart) {
        part = text.Text(at, std::min(kCopyPart, range.To - at));
        std::size_t kept = 0;
        for (const char byte : part) {
            const bool pairEnds = afterCr && byte == '\n';
            afterCr = byte == '\r';
            if (!pairEnds) part[kept++] = afterCr ? '\n' : byte;
        }
        lines += decode(QByteArrayView(part.data(), static_cast<qsizetype>(kept)));
    }
    return lines;
}

}  // namespace tessel
