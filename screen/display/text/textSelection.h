#pragma once

#include <cstdint>

#include "screen/display/text/lineLayout.h"

namespace tessel {

struct TextRange {
    TextOffset From = 0;
    TextOffset To = 0;
    std::int64_t Size() const { return To - From; }
    bool operator==(const TextRange&) const = default;
};

/// The run of letters and digits, of blanks, or of other characters around `at`, within its line;
/// looks no further than a few thousand bytes either way.
TextRange WordAt(const TextDisplay& text, TextOffset at);
/// The line that holds `at`, with its line break.
TextRange WholeLineAt(const TextDisplay& text, TextOffset at);

/// The selected part of a display's text: from where it was begun (the anchor) to the caret.
class DisplaySelection {
  public:
    enum class Unit { kCharacter, kWord, kLine };
    enum class Move {
        kLeft,
        kRight,
        kWordLeft,
        kWordRight,
        kLineStart,
        kLineEnd,
        kTextStart,
        kTextEnd
    };

    explicit DisplaySelection(const TextDisplay& text) : Text(text) {}

    TextOffset Anchor() const { return AnchorAt; }
    TextOffset Caret() const { return CaretAt; }
    TextRange Range() const;
    bool IsEmpty() const { return AnchorAt == CaretAt; }

    void Select(TextOffset anchor, TextOffset caret);
    /// Moves the caret; the anchor goes with it unless the selection is to be extended.
    void MoveCaret(TextOffset caret, bool extend);
    void MoveCaret(Move move, bool extend);
    /// Moves the caret by lines, along the column at which the first of such moves began.
    void MoveLines(std::int64_t lines, bool extend, const LayoutRules& rules);
    /// The text has become shorter or different: draws both ends into it.
    void Clamp();

    /// Begins a selection by units at `at`, where a person pressed, and extends it to `at`, where
    /// the pointer now is: the unit where it began stays selected.
    void BeginDrag(TextOffset at, Unit unit);
    void DragTo(TextOffset at);
    /// Extends the selection to `at` by characters, as the start of a drag.
    void ExtendTo(TextOffset at);

  private:
    TextRange UnitAt(TextOffset at) const;
    TextOffset Target(Move move) const;

    const TextDisplay& Text;
    TextOffset AnchorAt = 0;
    TextOffset CaretAt = 0;
    std::int64_t WantedColumn = -1;  // of moves by lines; -1 when the last move was another
    Unit DragUnit = Unit::kCharacter;
    TextRange DragOrigin;
};

}  // namespace tessel
