#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "platform/textDisplay.h"

/// Where the characters of a display's line stand on the screen: a grid of equal cells.
namespace tessel {

/// A line of more bytes than this is long: each of its bytes takes one cell, so that a column is a
/// place without a look at what stands in front of it.
inline constexpr std::int64_t kLongLine = 4096;

/// One character as the screen shows it.
struct DisplayCell {
    TextOffset At;        ///< its first byte
    std::int64_t Column;  ///< its left edge, in cells from the line's left edge
    int Columns;          ///< 1, 2 for a wide character, more for a tab
    char32_t Code;        ///< what is painted: a blank for a tab, U+FFFD for what is no text
};

/// A line, and those of its cells that reach into the columns asked for.
struct LineLayout {
    std::int64_t Line = 0;
    TextOffset Start = 0;
    TextOffset End = 0;        ///< in front of its line break
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

/// The first character of `bytes`, which is not empty; U+FFFD and one byte when it is malformed.
DecodedCharacter DecodeUtf8(std::string_view bytes);

/// Where a tab that stands at `column` ends: the first stop that is at least one cell further
/// right, behind the last stop the next multiple of 8.
std::int64_t TabEnd(std::int64_t column, const std::vector<std::int64_t>& stops);

/// Lays out `line` for the columns from `left` on. Reads at most kLongLine bytes or little more
/// than `columns` of them.
LineLayout LayLine(const TextDisplay& text, std::int64_t line, std::int64_t left,
                   std::int64_t columns, const LayoutRules& rules);
/// Lays out `count` lines from `first` on, or as many as there are.
std::vector<LineLayout> LayLines(const TextDisplay& text, std::int64_t first, std::int64_t count,
                                 std::int64_t left, std::int64_t columns, const LayoutRules& rules);

/// The column at which the character at `at` begins.
std::int64_t ColumnOf(const TextDisplay& text, TextOffset at, const LayoutRules& rules);
/// The place in `line` that is nearest to a distance from its left edge, in half cells.
TextOffset OffsetInLine(const TextDisplay& text, std::int64_t line, std::int64_t halfCells,
                        const LayoutRules& rules);

/// `at`, or the start of the character or line break that it lies within.
TextOffset CharacterStart(const TextDisplay& text, TextOffset at);
/// The place behind, and in front of, the character or line break there. They stay within the text.
TextOffset NextOffset(const TextDisplay& text, TextOffset at);
TextOffset PreviousOffset(const TextDisplay& text, TextOffset at);

}  // namespace tessel
