#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/textDisplay.h"
#include "volume/clusterChain.h"

namespace tessel {

/// Generates the text view of a chain on request: each byte is one character, or four for its value
/// in angle brackets. Stores the text offset of every 8 KiB block of the chain.
class PlainText {
  public:
    explicit PlainText(ClusterChain chain) : Source(std::move(chain)) {}

    const ClusterChain& Chain() const { return Source; }
    /// Extends the text by the next bytes of the chain.
    void Add(std::span<const Byte> bytes);

    std::int64_t Size() const { return TextSize; }
    std::int64_t LineBreaks() const { return Breaks; }
    std::int64_t BreaksUpTo(TextOffset at) const;
    TextOffset AfterBreak(std::int64_t n) const;
    /// Fills `text` with the bytes of the text from `at` on. If the image has changed meanwhile,
    /// the text of a block is cut, or padded with blanks, to its previous length.
    void Read(TextOffset at, std::span<char> text) const;

  private:
    struct Mark {
        TextOffset Text;      // text offset of the block
        std::int64_t Breaks;  // line breaks that end before it
    };
    void AddWithinBlock(std::span<const Byte> bytes);
    std::size_t BlockAt(TextOffset at) const;
    std::string BlockText(std::size_t block) const;

    ClusterChain Source;
    std::vector<Mark> Marks;  // one per block
    std::int64_t Bytes = 0;
    std::int64_t TextSize = 0;
    std::int64_t Breaks = 0;
    bool AfterCr = false;  // the last byte is a CR
};

/// Returns the text as a piece of a display, with a size of 0. The view enlarges the piece after
/// each Add.
GeneratedText PlainPiece(const std::shared_ptr<const PlainText>& text);

}  // namespace tessel
