#include "screen/display/text/textSearch.h"
#include "screen/display/text/textSelection.h"
#include "tests/fixture.h"
#include "util/modUtility.h"

/// The display's text without a toolkit: cells, offsets, search, selection.
namespace tessel {
namespace {

const LayoutRules kRules = {{4, 10}, [](char32_t code) { return code == 0x4E2D ? 2 : 1; }};

/// The painted characters as UTF-8; a wide one is preceded by its number of columns.
std::string Cells(const LineLayout& line) {
    std::string cells;
    for (const DisplayCell& cell : line.Cells) {
        if (cell.Columns > 1) cells += std::to_string(cell.Columns);
        cells += Utf8(std::u16string(1, static_cast<char16_t>(cell.Code)));
    }
    return cells;
}

TEST(DisplayText, LinesAreLaidOutInCells) {
    const std::string malformed = "\x80\xC3(\xE2\x82\xF0\x9F\x98\xED\xA0\x80\xC0\xAF\xC3";
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {"a\tbcdefg\th\t\t", "a3 bcdefg6 h7 8 "},
        {"\u00FC\u4E2D|\u202E\x01", "\u00FC2\u4E2D|\uFFFD\uFFFD"},
        {malformed, Times(2, "\uFFFD") + "(" + Times(11, "\uFFFD")}};
    for (const auto& [line, cells] : rows) {
        TextDisplay text;
        text.Append("before\r\n" + line + "\rafter");
        EXPECT_EQ(Cells(LayLine(text, 1, 0, 99, kRules)), cells);
        // A line that is so long that a column is a byte has the same rules for its offsets.
        for (const std::string& filling : {std::string(), Times(500, line + "\u20ACx\U0001F600")}) {
            text.Replace("before\r\n" + line + filling + "\n");
            const LineLayout whole = LayLine(text, 1, 0, 99999, kRules);
            for (std::size_t i = 0; i < whole.Cells.size(); i += 1 + i / 50) {
                const DisplayCell& cell = whole.Cells[i];
                EXPECT_EQ(ColumnOf(text, cell.At, kRules), cell.Column);
                EXPECT_EQ(OffsetInLine(text, 1, 2 * cell.Column, kRules), cell.At);
                // A part of the line has the cells that overlap its columns.
                const LineLayout part = LayLine(text, 1, cell.Column, 5, kRules);
                EXPECT_EQ(part.Columns, whole.Columns);
                for (const DisplayCell& shown : part.Cells) {
                    const auto same = [&](const DisplayCell& c) { return c.At == shown.At; };
                    const auto full = std::find_if(whole.Cells.begin(), whole.Cells.end(), same);
                    ASSERT_NE(full, whole.Cells.end()) << shown.At;
                    EXPECT_TRUE(full->Code == shown.Code && full->Column == shown.Column);
                }
                ASSERT_FALSE(part.Cells.empty());
                EXPECT_EQ(part.Cells[0].At, cell.At);
            }
        }
    }
}

TEST(DisplayText, OffsetsStepByCharactersAndLineBreaks) {
    TextDisplay text;
    text.Append("a\u00FC\r\n\u20AC\r\r\n\n\U0001F600\xE2\x82|\xC3");
    std::vector<TextOffset> offsets = {0};
    while (offsets.back() < text.Size()) offsets.push_back(NextOffset(text, offsets.back()));
    EXPECT_EQ(offsets, (std::vector<TextOffset>{0, 1, 3, 5, 8, 9, 11, 12, 16, 17, 18, 19, 20}));
    for (TextOffset at = 0; at <= text.Size(); ++at) {
        const auto next = std::upper_bound(offsets.begin(), offsets.end(), at);
        EXPECT_EQ(CharacterStart(text, at), *std::prev(next)) << at;
        const auto before = std::lower_bound(offsets.begin(), offsets.end(), at);
        EXPECT_EQ(PreviousOffset(text, at), at == 0 ? 0 : *std::prev(before)) << at;
    }
}

TEST(DisplayText, ASearchFindsHitsAcrossStepsAndWraps) {
    constexpr std::int64_t kStep = TextSearch::kStep;
    const std::int64_t size = 3 * kStep;
    std::string content(static_cast<std::size_t>(size), 'x');
    const std::vector<TextOffset> hits = {0, kStep - 2, 2 * kStep, size - 4};
    for (const TextOffset hit : hits) content.replace(static_cast<std::size_t>(hit), 4, "MaRk");
    TextDisplay text;
    text.Append(content);
    const auto find = [&text](const std::string& query, bool matchCase, bool backwards,
                              TextOffset from) {
        TextSearch search(text, {query, matchCase, backwards}, from);
        auto state = TextSearch::State::kSearching;
        while (state == TextSearch::State::kSearching) state = search.Step();
        return state == TextSearch::State::kNone ? -1 : search.Hit();
    };
    for (const TextOffset from : {TextOffset{0}, TextOffset{1}, TextOffset{4}, kStep - 2, kStep + 2,
                                  2 * kStep + 3, size - 4, size}) {
        const auto next = std::lower_bound(hits.begin(), hits.end(), from);
        const auto last = std::upper_bound(hits.begin(), hits.end(), from - 4);
        EXPECT_EQ(find("mark", false, false, from), next == hits.end() ? hits.front() : *next);
        EXPECT_EQ(find("MARK", false, true, from),
                  last == hits.begin() ? hits.back() : *std::prev(last));
        EXPECT_EQ(find("mark", true, false, from), -1);
        EXPECT_EQ(find(std::string(content.size() + 1, 'x'), true, true, from), -1);
    }
}

TEST(DisplayText, TheSelectionMovesByWordsAndLines) {
    using Move = DisplaySelection::Move;
    TextDisplay text;
    text.Append("one  t\u00FCo.\r\n\r\nlast line");
    DisplaySelection selection(text);
    const std::tuple<Move, bool, TextOffset, TextOffset> moves[] = {
        {Move::kWordRight, false, 5, 5},  {Move::kWordRight, true, 5, 9},
        {Move::kWordRight, true, 5, 10},  {Move::kWordRight, true, 5, 12},
        {Move::kLeft, false, 5, 5},       {Move::kWordLeft, false, 0, 0},
        {Move::kTextEnd, true, 0, 23},    {Move::kWordLeft, true, 0, 19},
        {Move::kLineStart, false, 14, 14}};
    for (const auto& [move, extend, anchor, caret] : moves) {
        selection.MoveCaret(move, extend);
        EXPECT_EQ(selection.Anchor(), anchor);
        EXPECT_EQ(selection.Caret(), caret);
    }
    selection.MoveCaret(8, false);
    for (const TextOffset caret : {12, 21}) {
        selection.MoveLines(1, false, kRules);
        EXPECT_EQ(selection.Caret(), caret) << "the column of the first line is kept";
    }
    selection.BeginDrag(20, DisplaySelection::Unit::kWord);
    selection.DragTo(1);
    EXPECT_EQ(selection.Range(), (TextRange{0, 23})) << "the word where the drag began stays";
}

}  // namespace
}  // namespace tessel
