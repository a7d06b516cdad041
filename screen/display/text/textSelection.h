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
/// examines at most a few thousand bytes on either side.
TextRange WordAt(const TextDisplay& text, TextOffset at);
/// The line that contains `at`, including its line break.
TextRange WholeLineAt(const TextDisplay& text, TextOffset at);

/// The selection in a display's text, from the anchor (where it began) to the caret.
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
    /// Moves the caret, and the anchor with it unless `extend`.
    void MoveCaret(TextOffset caret, bool extend);
    void MoveCaret(Move move, bool extend);
    /// Moves the caret by lines and keeps the column of the first of consecutive such moves.
    void MoveLines(std::int64_t lines, bool extend, const LayoutRules& rules);
    /// Clamps both ends to the text after it has become shorter.
    void Clamp();

    /// Begin a drag that selects whole units at `at`, and extend it to `at`. The unit where the
    /// drag began stays selected.
    void BeginDrag(TextOffset at, Unit unit);
    void DragTo(TextOffset at);
    /// Extends the selection to `at` by characters and begins a drag.
    void ExtendTo(TextOffset at);

  private:
    TextRange UnitAt(TextOffset at) const;
    TextOffset Target(Move move) const;

    const TextDisplay& Text;
    TextOffset AnchorAt = 0;
    TextOffset CaretAt = 0;
    std::int64_t WantedColumn = -1;  // of moves by lines; -1 after any other move
    Unit DragUnit = Unit::kCharacter;
    TextRange DragOrigin;
};

}  // namespace tessel
