#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "platform/textDisplay.h"

/// The layout of a display's lines in a grid of equal cells.
namespace tessel {

/// In a line of more bytes than this, each byte takes one cell: a column is then a byte offset, and
/// nothing before it needs to be read.
inline constexpr std::int64_t kLongLine = 4096;

/// One character as shown.
struct DisplayCell {
    TextOffset At;        ///< its first byte
    std::int64_t Column;  ///< its left edge, in cells from the line's left edge
    int Columns;          ///< 1, 2 for a wide character, more for a tab
    char32_t Code;  ///< the painted character: a blank for a tab, U+FFFD for malformed or control
};

/// A line, with its cells that overlap the requested columns.
struct LineLayout {
    std::int64_t Line = 0;
    TextOffset Start = 0;
    TextOffset End = 0;        ///< before its line break
    std::int64_t Columns = 0;  ///< the width of the whole line
    std::vector<DisplayCell> Cells;
};

struct LayoutRules {
    std::vector<std::int64_t> TabColumns;    ///< ascending
    std::function<int(char32_t)> ColumnsOf;  ///< 1 or 2
};

struct DecodedCharacter {
    char32_t Code;
    int Bytes;
};

/// Decodes the first character of `bytes`, which must not be empty. Returns U+FFFD and one byte if
/// it is malformed.
DecodedCharacter DecodeUtf8(std::string_view bytes);

/// The end column of a tab at `column`: the next stop to the right, or after the last stop the next
/// multiple of 8.
std::int64_t TabEnd(std::int64_t column, const std::vector<std::int64_t>& stops);

/// Lays out `line` for `columns` columns from `left` on. Reads at most kLongLine bytes, or slightly
/// more than `columns` bytes of a longer line.
LineLayout LayLine(const TextDisplay& text, std::int64_t line, std::int64_t left,
                   std::int64_t columns, const LayoutRules& rules);
/// Lays out `count` lines from `first` on, or fewer at the end of the text.
std::vector<LineLayout> LayLines(const TextDisplay& text, std::int64_t first, std::int64_t count,
                                 std::int64_t left, std::int64_t columns, const LayoutRules& rules);

/// The column at which the character at `at` begins.
std::int64_t ColumnOf(const TextDisplay& text, TextOffset at, const LayoutRules& rules);
/// The offset in `line` that is nearest to a distance from its left edge, in half cells.
TextOffset OffsetInLine(const TextDisplay& text, std::int64_t line, std::int64_t halfCells,
                        const LayoutRules& rules);

/// Returns `at`, or the start of the character or line break that contains it.
TextOffset CharacterStart(const TextDisplay& text, TextOffset at);
/// The offset after the character or line break at `at`, or of the one before `at`; within the
/// text.
TextOffset NextOffset(const TextDisplay& text, TextOffset at);
TextOffset PreviousOffset(const TextDisplay& text, TextOffset at);

}  // namespace tessel
