#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tessel {

/// A place in a display's text: bytes of UTF-8 from its start.
using TextOffset = std::int64_t;

/// Text that is made when somebody asks for it. The owner of a piece fills one of these; all
/// offsets are within the piece. A line break is CR LF, or a CR or LF alone.
struct GeneratedText {
    std::int64_t Size = 0;        ///< bytes of text
    std::int64_t LineBreaks = 0;  ///< line breaks in it
    bool OnlyCrLf = false;        ///< every CR in it stands before an LF, every LF behind a CR

    /// Appends the `count` bytes from `at` on to `out`; at + count is at most Size. Bytes
    /// that can no longer be read are told as if they were 0, and raise nothing.
    std::function<void(TextOffset at, std::size_t count, std::string& out)> Read{};
    /// How many line breaks end at or before `at`.
    std::function<std::int64_t(TextOffset at)> BreaksUpTo{};
    /// Where the text behind the n-th line break begins, n from 1 to LineBreaks.
    std::function<TextOffset(std::int64_t n)> BehindBreak{};
};

/// The text of a display: a sequence of pieces, of which the literal ones hold their text and the
/// generated ones make it when asked. What anybody reads (the screen, a copy, a search, a save) is
/// the same text, byte for byte. Lines count from 0, and there is always at least one.
class TextDisplay {
  public:
    /// Drops all pieces.
    void Clear();
    /// Drops all pieces and puts one literal text in their place.
    void Replace(std::string text);
    /// Adds a literal text at the end.
    void Append(std::string_view text);
    /// Adds a generated piece at the end. It may still grow.
    void Append(GeneratedText piece);
    /// Tells that the last piece, a generated one, now has this size and this many line breaks.
    void GrowLast(std::int64_t size, std::int64_t lineBreaks);

    std::int64_t Size() const;
    std::int64_t LineCount() const;
    /// Where line `line` begins; its end for a line behind the last.
    TextOffset LineStart(std::int64_t line) const;
    /// Where line `line` ends, in front of its line break.
    TextOffset LineEnd(std::int64_t line) const;
    /// The line that holds the byte at `at`.
    std::int64_t LineAt(TextOffset at) const;

    /// At most `count` bytes of the text from `at` on.
    std::string Text(TextOffset at, std::int64_t count) const;
    /// The whole text.
    std::string Text() const { return Text(0, Size()); }
    /// The text of `count` lines from `first` on, with their line breaks.
    std::string Lines(std::int64_t first, std::int64_t count) const;
    /// Hands the whole text to `sink`, in parts of bounded size, with a word on whether the piece
    /// that the part is of has `OnlyCrLf`. What `sink` throws ends it.
    void WriteTo(const std::function<void(std::string& part, bool onlyCrLf)>& sink) const;

    /// Counts the times that the text was cleared or replaced, so that a screen knows whether what
    /// it remembers (a selection, a place) still points at the same text.
    std::uint64_t Generation() const { return Generations; }
    /// The notice to the one screen that shows this display: the text has changed.
    std::function<void()> Changed{};

    /// The tab stops, in twips from the left edge of a line.
    std::vector<int> TabStops{};

  private:
    struct LiteralText {
        std::string Text{};
        std::vector<TextOffset> LineStarts{};  // behind each line break
        void Append(std::string_view text);
        void AddLineStarts(std::size_t from);
    };
    struct Piece {
        std::variant<LiteralText, GeneratedText> Content;
        TextOffset Start = 0;           // where it begins in the whole text
        std::int64_t BreaksBefore = 0;  // line breaks in the pieces in front of it

        std::int64_t Size() const;
        std::int64_t LineBreaks() const;
        void Read(TextOffset at, std::size_t count, std::string& out) const;
        std::int64_t BreaksUpTo(TextOffset at) const;
        TextOffset BehindBreak(std::int64_t n) const;
    };

    void AddPiece(std::variant<LiteralText, GeneratedText> content);
    void Notify() const;

    std::vector<Piece> Pieces{};
    std::uint64_t Generations = 0;
};

}  // namespace tessel
