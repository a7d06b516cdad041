#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/pageBytes.h"

namespace tessel {

/// An offset in a display's text: bytes of UTF-8 from its start.
using TextOffset = std::int64_t;

/// A piece of ASCII text that is generated on request, by the functions in this record. Offsets
/// count from the start of the piece. A line break is CR LF, or a CR or LF alone.
struct GeneratedText {
    std::int64_t Size = 0;        ///< bytes of text
    std::int64_t LineBreaks = 0;  ///< line breaks in it
    bool OnlyCrLf = false;        ///< every line break in it is a CR LF

    /// Fills `text` with the bytes from `at` on, at most up to Size. Raises nothing: bytes of the
    /// image that can no longer be read count as 0.
    std::function<void(TextOffset at, std::span<char> text)> Read{};
    /// Returns the number of line breaks that end at or before `at`.
    std::function<std::int64_t(TextOffset at)> BreaksUpTo{};
    /// Returns the offset after the n-th line break, n from 1 to LineBreaks.
    std::function<TextOffset(std::int64_t n)> AfterBreak{};
};

/// The text of a display: a sequence of pieces. A literal piece stores its text, a generated one
/// formats it on request; every reader (painting, copying, searching, saving) gets the same bytes.
/// Lines count from 0, and there is always at least one.
class TextDisplay {
  public:
    /// Removes all pieces.
    void Clear();
    /// Replaces all pieces by one literal text.
    void Replace(std::string text);
    /// Appends a literal text.
    void Append(std::string_view text);
    /// Appends a generated piece, which GrowLast can enlarge.
    void Append(GeneratedText piece);
    /// Sets the size (bytes) and the line breaks of the last piece. Does nothing unless that piece
    /// is a generated one.
    void GrowLast(std::int64_t size, std::int64_t lineBreaks);

    std::int64_t Size() const;
    std::int64_t LineCount() const;
    /// The offset of the first byte of line `line`; 0 for a negative line, Size() for a line past
    /// the last.
    TextOffset LineStart(std::int64_t line) const;
    /// The offset after the last byte of line `line`, without its line break.
    TextOffset LineEnd(std::int64_t line) const;
    /// The line that contains the byte at `at`; offsets outside the text are clamped to it.
    std::int64_t LineAt(TextOffset at) const;

    /// The number of UTF-16 units in the text before `at`; offsets outside the text count as its
    /// ends.
    std::int64_t Utf16Before(TextOffset at) const;
    /// The offset of the character that contains UTF-16 unit `unit`: 0 for a negative unit, Size()
    /// for one past the last.
    TextOffset OffsetOfUtf16(std::int64_t unit) const;

    /// Up to `count` bytes of the text from `at` on.
    std::string Text(TextOffset at, std::int64_t count) const;
    /// The whole text.
    std::string Text() const { return Text(0, Size()); }
    /// The text of `count` lines from `first` on, including their line breaks.
    std::string Lines(std::int64_t first, std::int64_t count) const;
    /// Passes the whole text to `sink`, in parts of at most 2 MiB. `onlyCrLf` is OnlyCrLf of the
    /// generated piece that the part belongs to, false for a literal one. `sink` may take over the
    /// content of `part`; what it throws goes to the caller.
    void WriteTo(const std::function<void(PageText& part, bool onlyCrLf)>& sink) const;

    /// Increases whenever the text is cleared or replaced: offsets kept from an earlier generation
    /// (a selection, a scroll position) are invalid.
    std::uint64_t Generation() const { return Generations; }
    /// Set by the screen that shows this display: the text has changed.
    std::function<void()> Changed{};

    /// The tab stops, in twips from the left edge of a line.
    std::vector<int> TabStops{};

  private:
    struct LiteralText {
        std::string Text{};
        std::vector<TextOffset> LineStarts{};    // the offset after each line break
        std::vector<std::int64_t> Utf16Marks{};  // UTF-16 units before every kUtf16Block bytes
        void Append(std::string_view text);
        void Index(std::size_t from);
        std::int64_t Utf16Before(TextOffset at) const;
        TextOffset OffsetOfUtf16(std::int64_t unit) const;
    };
    struct Piece {
        std::variant<LiteralText, GeneratedText> Content;
        TextOffset Start = 0;           // its offset in the whole text
        std::int64_t BreaksBefore = 0;  // line breaks in the pieces before it
        std::int64_t Utf16Start = 0;    // UTF-16 units in the pieces before it

        std::int64_t Size() const;
        std::int64_t LineBreaks() const;
        void Read(TextOffset at, std::span<char> text) const;
        std::int64_t BreaksUpTo(TextOffset at) const;
        TextOffset AfterBreak(std::int64_t n) const;
        std::int64_t Utf16Before(TextOffset at) const;
        TextOffset OffsetOfUtf16(std::int64_t unit) const;
    };

    void AddPiece(std::variant<LiteralText, GeneratedText> content);
    void Notify() const;

    std::vector<Piece> Pieces{};
    std::uint64_t Generations = 0;
};

}  // namespace tessel
