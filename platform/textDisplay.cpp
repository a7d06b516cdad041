#include "platform/textDisplay.h"

#include <algorithm>

namespace tessel {
namespace {

/// Bytes of a part of WriteTo.
constexpr std::int64_t kPartSize = 2 << 20;
/// Bytes of a literal text between two counts of UTF-16 units.
constexpr std::size_t kUtf16Block = 4096;

/// The UTF-16 units of the character that begins with `byte`; 0 for a continuation byte.
int Utf16Units(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return static_cast<int>((code & 0xC0U) != 0x80U) + static_cast<int>(code >= 0xF0U);
}

std::int64_t CountUtf16(std::string_view text) {
    std::int64_t units = 0;
    for (const char byte : text) units += Utf16Units(byte);
    return units;
}

template <class... F>
struct Overloaded : F... {
    using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

}  // namespace

void TextDisplay::LiteralText::Append(std::string_view text) {
    // A CR at the end of the current text may be the first half of a CR LF.
    if (Text.ends_with('\r') && text.starts_with('\n')) LineStarts.pop_back();
    Text += text;
    Index(Text.size() - text.size());
}

void TextDisplay::LiteralText::Index(std::size_t from) {
    for (std::size_t at = Utf16Marks.size() * kUtf16Block; at < Text.size(); at += kUtf16Block) {
        Utf16Marks.push_back(Utf16Before(static_cast<TextOffset>(at)));
    }
    std::string_view rest = std::string_view(Text).substr(from);
    const auto addStartAfter = [this, &rest](std::size_t at) {
        const std::size_t start = Text.size() - rest.size();
        LineStarts.push_back(static_cast<TextOffset>(start + at + 1));
    };
    while (!rest.empty()) {
        const std::size_t lf = std::min(rest.find('\n'), rest.size());
        const std::string_view line = rest.substr(0, lf);
        for (std::size_t cr = line.find('\r'); cr != line.npos; cr = line.find('\r', cr + 1)) {
            const bool pair = cr + 1 == lf && lf < rest.size();
            if (!pair) addStartAfter(cr);
        }
        if (lf == rest.size()) break;
        addStartAfter(lf);
        rest.remove_prefix(lf + 1);
    }
}

std::int64_t TextDisplay::LiteralText::Utf16Before(TextOffset at) const {
    const auto to = static_cast<std::size_t>(at);
    if (to == 0 || Utf16Marks.empty()) return 0;
    const std::size_t block = std::min(to / kUtf16Block, Utf16Marks.size() - 1);
    const std::size_t from = block * kUtf16Block;
    return Utf16Marks[block] + CountUtf16(std::string_view(Text).substr(from, to - from));
}

TextOffset TextDisplay::LiteralText::OffsetOfUtf16(std::int64_t unit) const {
    const auto mark = std::upper_bound(Utf16Marks.begin(), Utf16Marks.end(), unit);
    if (mark == Utf16Marks.begin()) return 0;
    std::int64_t units = *std::prev(mark);
    auto at = static_cast<std::size_t>(mark - Utf16Marks.begin() - 1) * kUtf16Block;
    for (; at < Text.size(); ++at) {
        const int width = Utf16Units(Text[at]);
        if (width > 0 && units + width > unit) break;
        units += width;
    }
    return static_cast<TextOffset>(at);
}

std::int64_t TextDisplay::Piece::Size() const {
    return std::visit(
        Overloaded{[](const LiteralText& t) { return static_cast<std::int64_t>(t.Text.size()); },
                   [](const GeneratedText& t) { return t.Size; }},
        Content);
}

std::int64_t TextDisplay::Piece::LineBreaks() const {
    return std::visit(Overloaded{[](const LiteralText& t) {
                                     return static_cast<std::int64_t>(t.LineStarts.size());
                                 },
                                 [](const GeneratedText& t) { return t.LineBreaks; }},
                      Content);
}

void TextDisplay::Piece::Read(TextOffset at, std::span<char> text) const {
    std::visit(Overloaded{[&](const LiteralText& t) {
                              std::copy_n(t.Text.begin() + at, text.size(), text.begin());
                          },
                          [&](const GeneratedText& t) { t.Read(at, text); }},
               Content);
}

std::int64_t TextDisplay::Piece::BreaksUpTo(TextOffset at) const {
    return std::visit(
        Overloaded{[&](const LiteralText& t) {
                       const auto& starts = t.LineStarts;
                       return static_cast<std::int64_t>(
                           std::upper_bound(starts.begin(), starts.end(), at) - starts.begin());
                   },
                   [&](const GeneratedText& t) { return t.BreaksUpTo(at); }},
        Content);
}

TextOffset TextDisplay::Piece::AfterBreak(std::int64_t n) const {
    return std::visit(Overloaded{[&](const LiteralText& t) {
                                     return t.LineStarts[static_cast<std::size_t>(n - 1)];
                                 },
                                 [&](const GeneratedText& t) { return t.AfterBreak(n); }},
                      Content);
}

std::int64_t TextDisplay::Piece::Utf16Before(TextOffset at) const {
    const auto* literal = std::get_if<LiteralText>(&Content);
    return literal != nullptr ? literal->Utf16Before(at) : at;
}

TextOffset TextDisplay::Piece::OffsetOfUtf16(std::int64_t unit) const {
    const auto* literal = std::get_if<LiteralText>(&Content);
    return literal != nullptr ? literal->OffsetOfUtf16(unit) : unit;
}

void TextDisplay::Clear() {
    ++Generations;
    Pieces.clear();
    Pieces.shrink_to_fit();
    Notify();
}

void TextDisplay::Replace(std::string text) {
    ++Generations;
    Pieces.clear();
    if (!text.empty()) {
        LiteralText literal{.Text = std::move(text), .LineStarts = {}, .Utf16Marks = {}};
        literal.Index(0);
        AddPiece(std::move(literal));
    }
    Notify();
}

void TextDisplay::Append(std::string_view text) {
    if (text.empty()) return;
    if (Pieces.empty() || !std::holds_alternative<LiteralText>(Pieces.back().Content)) {
        AddPiece(LiteralText{});
    }
    std::get<LiteralText>(Pieces.back().Content).Append(text);
    Notify();
}

void TextDisplay::Append(GeneratedText piece) {
    AddPiece(std::move(piece));
    Notify();
}

void TextDisplay::GrowLast(std::int64_t size, std::int64_t lineBreaks) {
    if (Pieces.empty()) return;
    auto* piece = std::get_if<GeneratedText>(&Pieces.back().Content);
    if (piece == nullptr) return;
    piece->Size = size;
    piece->LineBreaks = lineBreaks;
    Notify();
}

void TextDisplay::AddPiece(std::variant<LiteralText, GeneratedText> content) {
    const TextOffset start = Size();
    const std::int64_t before = LineCount() - 1;
    Pieces.push_back({std::move(content), start, before, Utf16Before(start)});
}

void TextDisplay::Notify() const {
    if (Changed) Changed();
}

std::int64_t TextDisplay::Size() const {
    return Pieces.empty() ? 0 : Pieces.back().Start + Pieces.back().Size();
}

std::int64_t TextDisplay::LineCount() const {
    return Pieces.empty() ? 1 : Pieces.back().BreaksBefore + Pieces.back().LineBreaks() + 1;
}

TextOffset TextDisplay::LineStart(std::int64_t line) const {
    if (line <= 0) return 0;
    if (line >= LineCount()) return Size();
    for (const Piece& piece : Pieces) {
        const std::int64_t n = line - piece.BreaksBefore;
        if (n <= piece.LineBreaks()) return piece.Start + piece.AfterBreak(n);
    }
    return Size();
}

TextOffset TextDisplay::LineEnd(std::int64_t line) const {
    if (line + 1 >= LineCount()) return Size();
    const TextOffset start = LineStart(line);
    const TextOffset next = LineStart(line + 1);
    const std::string tail =
        Text(std::max(start, next - 2), std::min<std::int64_t>(2, next - start));
    if (tail == "\r\n") return next - 2;
    return tail.empty() ? next : next - 1;
}

std::int64_t TextDisplay::LineAt(TextOffset at) const {
    at = std::clamp<TextOffset>(at, 0, Size());
    std::int64_t line = 0;
    for (const Piece& piece : Pieces) {
        if (piece.Start > at) break;
        line = piece.BreaksBefore + piece.BreaksUpTo(std::min(at - piece.Start, piece.Size()));
    }
    return line;
}

std::int64_t TextDisplay::Utf16Before(TextOffset at) const {
    at = std::clamp<TextOffset>(at, 0, Size());
    std::int64_t units = 0;
    for (const Piece& piece : Pieces) {
        if (piece.Start > at) break;
        units = piece.Utf16Start + piece.Utf16Before(std::min(at - piece.Start, piece.Size()));
    }
    return units;
}

TextOffset TextDisplay::OffsetOfUtf16(std::int64_t unit) const {
    TextOffset at = 0;
    for (const Piece& piece : Pieces) {
        if (piece.Utf16Start > unit) break;
        at = piece.Start + std::min(piece.OffsetOfUtf16(unit - piece.Utf16Start), piece.Size());
    }
    return at;
}

std::string TextDisplay::Text(TextOffset at, std::int64_t count) const {
    std::string text;
    at = std::max<TextOffset>(at, 0);
    const TextOffset end = std::min(Size(), at + std::max<std::int64_t>(count, 0));
    if (at >= end) return text;
    text.resize(static_cast<std::size_t>(end - at));
    for (const Piece& piece : Pieces) {
        const TextOffset from = std::max(at, piece.Start);
        const TextOffset to = std::min(end, piece.Start + piece.Size());
        if (from >= to) continue;
        piece.Read(from - piece.Start,
                   std::span(text).subspan(static_cast<std::size_t>(from - at),
                                           static_cast<std::size_t>(to - from)));
    }
    return text;
}

std::string TextDisplay::Lines(std::int64_t first, std::int64_t count) const {
    const TextOffset start = LineStart(first);
    return Text(start, LineStart(first + count) - start);
}

void TextDisplay::WriteTo(const std::function<void(PageText& part, bool onlyCrLf)>& sink) const {
    PageText part;
    for (const Piece& piece : Pieces) {
        const std::int64_t size = piece.Size();
        const auto* generated = std::get_if<GeneratedText>(&piece.Content);
        const bool onlyCrLf = generated != nullptr && generated->OnlyCrLf;
        for (TextOffset at = 0; at < size; at += kPartSize) {
            part.resize(static_cast<std::size_t>(std::min(kPartSize, size - at)));
            piece.Read(at, part);
            sink(part, onlyCrLf);
        }
    }
}

}  // namespace tessel
