#include "screen/display/text/lineLayout.h"

#include <algorithm>
#include <array>
#include <limits>

namespace tessel {
namespace {

constexpr char32_t kNoText = 0xFFFD;

/// Lines are read together if their total size, in bytes, is at most this.
constexpr std::int64_t kOneRead = 1 << 18;

constexpr std::int64_t kAllColumns = std::numeric_limits<std::int64_t>::max() / 4;

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

struct CodeRange {
    char32_t First, Last;
};
/// Controls, line separators and format characters (general categories Cc, Cf, Zl and Zp of Unicode
/// 15) beyond ASCII, ascending.
constexpr auto kInvisible = std::to_array<CodeRange>(
    {{0x7F, 0x9F},       {0xAD, 0xAD},       {0x600, 0x605},     {0x61C, 0x61C},
     {0x6DD, 0x6DD},     {0x70F, 0x70F},     {0x890, 0x891},     {0x8E2, 0x8E2},
     {0x180E, 0x180E},   {0x200B, 0x200F},   {0x2028, 0x202E},   {0x2060, 0x2064},
     {0x2066, 0x206F},   {0xFEFF, 0xFEFF},   {0xFFF9, 0xFFFB},   {0x110BD, 0x110BD},
     {0x110CD, 0x110CD}, {0x13430, 0x1343F}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A},
     {0xE0001, 0xE0001}, {0xE0020, 0xE007F}});

/// The character to paint. Control and format characters are invisible but may affect the line, for
/// example reverse its order; they are shown as U+FFFD.
char32_t Shown(char32_t code) {
    if (code >= 0x20 && code < 0x7F) return code;
    if (code < 0x20) return kNoText;
    const auto range = std::lower_bound(kInvisible.begin(), kInvisible.end(), code,
                                        [](CodeRange r, char32_t c) { return r.Last < c; });
    return range != kInvisible.end() && range->First <= code ? kNoText : code;
}

/// The offsets of a line's first byte and of the next line's.
struct LineBounds {
    std::int64_t Line;
    TextOffset Start;
    TextOffset Next;
    bool Last;  // it has no line break
};

std::int64_t BreakLength(std::string_view line) {
    if (line.ends_with("\r\n")) return 2;
    return line.empty() ? 0 : 1;
}

LineLayout LayShort(const LineBounds& bounds, std::string_view bytes, std::int64_t left,
                    std::int64_t columns, const LayoutRules& rules) {
    if (!bounds.Last) bytes.remove_suffix(static_cast<std::size_t>(BreakLength(bytes)));
    LineLayout laid{
        bounds.Line, bounds.Start, bounds.Start + static_cast<std::int64_t>(bytes.size()), 0, {}};
    std::int64_t column = 0;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto [code, length] = DecodeUtf8(bytes.substr(i));
        DisplayCell cell{bounds.Start + static_cast<TextOffset>(i), column, 1, U' '};
        if (code == U'\t') {
            cell.Columns = static_cast<int>(TabEnd(column, rules.TabColumns) - column);
        } else {
            cell.Code = Shown(code);
            if (cell.Code >= 0x7F) cell.Columns = rules.ColumnsOf(cell.Code);
        }
        column += cell.Columns;
        if (column > left && cell.Column - left < columns) laid.Cells.push_back(cell);
        i += static_cast<std::size_t>(length);
    }
    laid.Columns = column;
    return laid;
}

LineLayout LayLong(const TextDisplay& text, const LineBounds& bounds, std::int64_t left,
                   std::int64_t columns) {
    LineLayout laid{bounds.Line, bounds.Start, bounds.Next, 0, {}};
    if (!bounds.Last) laid.End -= BreakLength(text.Text(bounds.Next - 2, 2));
    laid.Columns = laid.End - laid.Start;
    // A character that begins up to three bytes further left may be partly visible.
    const std::int64_t first = std::clamp<std::int64_t>(left - 3, 0, laid.Columns);
    const std::int64_t end = first + std::min(columns + 6, laid.Columns - first);
    const std::string window = text.Text(laid.Start + first, end - first);
    const std::string_view bytes = window;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto [code, length] = DecodeUtf8(bytes.substr(i));
        const std::int64_t column = first + static_cast<std::int64_t>(i);
        const DisplayCell cell{laid.Start + column, column, length,
                               code == U'\t' ? U' ' : Shown(code)};
        if (column + length > left && column - left < columns) laid.Cells.push_back(cell);
        i += static_cast<std::size_t>(length);
    }
    return laid;
}

LineLayout Lay(const TextDisplay& text, const LineBounds& bounds, std::int64_t left,
               std::int64_t columns, const LayoutRules& rules) {
    if (bounds.Next - bounds.Start > kLongLine) return LayLong(text, bounds, left, columns);
    const std::string bytes = text.Text(bounds.Start, bounds.Next - bounds.Start);
    return LayShort(bounds, bytes, left, columns, rules);
}

LineBounds BoundsOf(const TextDisplay& text, std::int64_t line) {
    const bool last = line + 1 >= text.LineCount();
    const TextOffset start = text.LineStart(line);
    return {line, start, std::max(start, last ? text.Size() : text.LineStart(line + 1)), last};
}

}  // namespace

DecodedCharacter DecodeUtf8(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x80) return {lead, 1};
    const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < static_cast<std::size_t>(length)) {
        return {kNoText, 1};
    }
    char32_t code = lead & (0x7FU >> length);
    for (int i = 1; i < length; ++i) {
        const char byte = bytes[static_cast<std::size_t>(i)];
        if (!IsContinuation(byte)) return {kNoText, 1};
        code = (code << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> kMinCode = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kMinCode[static_cast<std::size_t>(length)] || surrogate || code > 0x10FFFF) {
        return {kNoText, 1};
    }
    return {code, length};
}

std::int64_t TabEnd(std::int64_t column, const std::vector<std::int64_t>& stops) {
    const auto stop = std::upper_bound(stops.begin(), stops.end(), column);
    return stop != stops.end() ? *stop : (column / 8 + 1) * 8;
}

LineLayout LayLine(const TextDisplay& text, std::int64_t line, std::int64_t left,
                   std::int64_t columns, const LayoutRules& rules) {
    return Lay(text, BoundsOf(text, line), left, columns, rules);
}

std::vector<LineLayout> LayLines(const TextDisplay& text, std::int64_t first, std::int64_t count,
                                 std::int64_t left, std::int64_t columns,
                                 const LayoutRules& rules) {
    const std::int64_t lines = text.LineCount();
    first = std::clamp<std::int64_t>(first, 0, lines - 1);
    count = std::clamp<std::int64_t>(count, 1, lines - first);
    std::vector<LineBounds> bounds;
    TextOffset start = text.LineStart(first);
    for (std::int64_t line = first; line < first + count; ++line) {
        const bool last = line + 1 >= lines;
        const TextOffset next = std::max(start, last ? text.Size() : text.LineStart(line + 1));
        bounds.push_back({line, start, next, last});
        start = next;
    }
    std::vector<LineLayout> laid;
    const TextOffset from = bounds.front().Start;
    const bool atOnce = bounds.back().Next - from <= kOneRead;
    const std::string all = atOnce ? text.Text(from, bounds.back().Next - from) : std::string();
    for (const LineBounds& line : bounds) {
        const std::int64_t size = line.Next - line.Start;
        // The text may change meanwhile, so that less was read than its size suggests.
        if (atOnce && size <= kLongLine && line.Next - from <= std::ssize(all)) {
            const auto bytes = std::string_view(all).substr(
                static_cast<std::size_t>(line.Start - from), static_cast<std::size_t>(size));
            laid.push_back(LayShort(line, bytes, left, columns, rules));
        } else {
            laid.push_back(Lay(text, line, left, columns, rules));
        }
    }
    return laid;
}

std::int64_t ColumnOf(const TextDisplay& text, TextOffset at, const LayoutRules& rules) {
    const LineBounds bounds = BoundsOf(text, text.LineAt(at));
    if (bounds.Next - bounds.Start > kLongLine) {
        return std::clamp(at, bounds.Start, LayLong(text, bounds, 0, 0).End) - bounds.Start;
    }
    const LineLayout laid = Lay(text, bounds, 0, kAllColumns, rules);
    const auto cell = std::lower_bound(laid.Cells.begin(), laid.Cells.end(), at,
                                       [](const DisplayCell& c, TextOffset a) { return c.At < a; });
    return cell != laid.Cells.end() ? cell->Column : laid.Columns;
}

TextOffset OffsetInLine(const TextDisplay& text, std::int64_t line, std::int64_t halfCells,
                        const LayoutRules& rules) {
    line = std::clamp<std::int64_t>(line, 0, text.LineCount() - 1);
    halfCells = std::max<std::int64_t>(halfCells, 0);
    const LineBounds bounds = BoundsOf(text, line);
    if (bounds.Next - bounds.Start > kLongLine) {
        const std::int64_t length = LayLong(text, bounds, 0, 0).Columns;
        return CharacterStart(text, bounds.Start + std::min((halfCells + 1) / 2, length));
    }
    const LineLayout laid = Lay(text, bounds, 0, kAllColumns, rules);
    for (const DisplayCell& cell : laid.Cells) {
        if (halfCells < 2 * cell.Column + cell.Columns) return cell.At;
    }
    return laid.End;
}

TextOffset CharacterStart(const TextDisplay& text, TextOffset at) {
    at = std::clamp<TextOffset>(at, 0, text.Size());
    const TextOffset first = std::max<TextOffset>(at - 3, 0);
    const std::string near = text.Text(first, at - first + 4);
    const auto here = static_cast<std::size_t>(at - first);
    if (here == 0 || here >= near.size()) return at;
    if (near[here] == '\n' && near[here - 1] == '\r') return at - 1;
    for (std::size_t back = 1; back <= here && IsContinuation(near[here - back + 1]); ++back) {
        const auto character = DecodeUtf8(std::string_view(near).substr(here - back));
        if (static_cast<std::size_t>(character.Bytes) > back) {
            return at - static_cast<TextOffset>(back);
        }
    }
    return at;
}

TextOffset NextOffset(const TextDisplay& text, TextOffset at) {
    const std::string bytes = text.Text(at, 4);
    if (bytes.empty()) return text.Size();
    return at + (bytes.starts_with("\r\n") ? 2 : DecodeUtf8(bytes).Bytes);
}

TextOffset PreviousOffset(const TextDisplay& text, TextOffset at) {
    return at <= 0 ? 0 : CharacterStart(text, at - 1);
}

}  // namespace tessel
