#include "screen/display/text/textSelection.h"

#include <algorithm>
#include <string>

namespace tessel {
namespace {

/// The bytes examined on either side of an offset within a word.
constexpr std::int64_t kWordReach = 4096;

enum class Kind { kWord, kBlank, kOther };

Kind KindOf(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    if (code == ' ' || code == '\t') return Kind::kBlank;
    const bool letter = (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z');
    const bool digit = code >= '0' && code <= '9';
    return letter || digit || code == '_' || code >= 0x80 ? Kind::kWord : Kind::kOther;
}

}  // namespace

TextRange WordAt(const TextDisplay& text, TextOffset at) {
    const std::int64_t line = text.LineAt(at);
    const TextOffset first = std::max(text.LineStart(line), at - kWordReach);
    const TextOffset end = std::min(text.LineEnd(line), at + kWordReach);
    at = std::min(at, end);
    if (first >= end) return {at, at};
    const std::string bytes = text.Text(first, end - first);
    if (bytes.empty()) return {at, at};
    const std::size_t here = std::min(static_cast<std::size_t>(at - first), bytes.size() - 1);
    const Kind kind = KindOf(bytes[here]);
    std::size_t from = here;
    while (from > 0 && KindOf(bytes[from - 1]) == kind) --from;
    std::size_t to = here + 1;
    while (to < bytes.size() && KindOf(bytes[to]) == kind) ++to;
    return {CharacterStart(text, first + static_cast<TextOffset>(from)),
            CharacterStart(text, first + static_cast<TextOffset>(to))};
}

TextRange WholeLineAt(const TextDisplay& text, TextOffset at) {
    const std::int64_t line = text.LineAt(at);
    return {text.LineStart(line), text.LineStart(line + 1)};
}

TextRange DisplaySelection::Range() const {
    return {std::min(AnchorAt, CaretAt), std::max(AnchorAt, CaretAt)};
}

void DisplaySelection::Select(TextOffset anchor, TextOffset caret) {
    const TextOffset size = Text.Size();
    AnchorAt = std::clamp<TextOffset>(anchor, 0, size);
    CaretAt = std::clamp<TextOffset>(caret, 0, size);
    WantedColumn = -1;
}

void DisplaySelection::MoveCaret(TextOffset caret, bool extend) {
    Select(extend ? AnchorAt : caret, caret);
}

void DisplaySelection::MoveCaret(Move move, bool extend) {
    // An arrow key without Shift moves to the selection's end in its direction.
    if (!extend && !IsEmpty() && (move == Move::kLeft || move == Move::kRight)) {
        MoveCaret(move == Move::kLeft ? Range().From : Range().To, false);
        return;
    }
    MoveCaret(Target(move), extend);
}

TextOffset DisplaySelection::Target(Move move) const {
    switch (move) {
        case Move::kLeft:
            return PreviousOffset(Text, CaretAt);
        case Move::kRight:
            return NextOffset(Text, CaretAt);
        case Move::kWordLeft: {
            const TextOffset before = PreviousOffset(Text, CaretAt);
            const TextOffset start = Text.LineStart(Text.LineAt(CaretAt));
            if (before < start) return before;
            TextRange word = WordAt(Text, before);
            const bool blank = KindOf(Text.Text(word.From, 1).append(1, 'x')[0]) == Kind::kBlank;
            if (blank && word.From > start) word = WordAt(Text, PreviousOffset(Text, word.From));
            return word.From;
        }
        case Move::kWordRight: {
            const TextOffset end = Text.LineEnd(Text.LineAt(CaretAt));
            if (CaretAt >= end) return NextOffset(Text, CaretAt);
            const TextOffset next = WordAt(Text, CaretAt).To;
            const bool blank = KindOf(Text.Text(next, 1).append(1, 'x')[0]) == Kind::kBlank;
            return blank && next < end ? WordAt(Text, next).To : next;
        }
        case Move::kLineStart:
            return Text.LineStart(Text.LineAt(CaretAt));
        case Move::kLineEnd:
            return Text.LineEnd(Text.LineAt(CaretAt));
        case Move::kTextStart:
            return 0;
        case Move::kTextEnd:
            return Text.Size();
    }
    return CaretAt;
}

void DisplaySelection::MoveLines(std::int64_t lines, bool extend, const LayoutRules& rules) {
    const std::int64_t column = WantedColumn >= 0 ? WantedColumn : ColumnOf(Text, CaretAt, rules);
    MoveCaret(OffsetInLine(Text, Text.LineAt(CaretAt) + lines, 2 * column, rules), extend);
    WantedColumn = column;
}

void DisplaySelection::Clamp() {
    const TextOffset size = Text.Size();
    if (std::max(AnchorAt, CaretAt) > size) Select(AnchorAt, CaretAt);
    DragOrigin.From = std::min(DragOrigin.From, size);
    DragOrigin.To = std::min(DragOrigin.To, size);
}

TextRange DisplaySelection::UnitAt(TextOffset at) const {
    switch (DragUnit) {
        case Unit::kWord:
            return WordAt(Text, at);
        case Unit::kLine:
            return WholeLineAt(Text, at);
        case Unit::kCharacter:
            break;
    }
    return {at, at};
}

void DisplaySelection::BeginDrag(TextOffset at, Unit unit) {
    DragUnit = unit;
    DragOrigin = UnitAt(at);
    Select(DragOrigin.From, DragOrigin.To);
}

void DisplaySelection::DragTo(TextOffset at) {
    const TextRange there = UnitAt(at);
    if (there.From < DragOrigin.From) {
        Select(DragOrigin.To, there.From);
    } else {
        Select(DragOrigin.From, std::max(DragOrigin.To, there.To));
    }
}

void DisplaySelection::ExtendTo(TextOffset at) {
    DragUnit = Unit::kCharacter;
    DragOrigin = {AnchorAt, AnchorAt};
    DragTo(at);
}

}  // namespace tessel
