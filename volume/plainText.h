#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/textDisplay.h"
#include "volume/clusterChain.h"

namespace tessel {

/// The text of a chain's bytes shown as text, without holding it: a byte is one character, or its
/// value in angle brackets, four. Every 8 KiB of the chain it keeps where the text stands there.
class PlainText {
  public:
    explicit PlainText(ClusterChain chain) : Source(std::move(chain)) {}

    const ClusterChain& Chain() const { return Source; }
    /// Takes note of the chain's next bytes.
    void Add(std::span<const Byte> bytes);

    std::int64_t Size() const { return TextSize; }
    std::int64_t LineBreaks() const { return Breaks; }
    std::int64_t BreaksUpTo(TextOffset at) const;
    TextOffset AfterBreak(std::int64_t n) const;
    /// Appends `count` bytes of the text from `at` on. Where the image has changed under it, the
    /// text is cut, or filled up with blanks, to what it was.
    void Read(TextOffset at, std::size_t count, std::string& out) const;

  private:
    struct Mark {
        TextOffset Text;      // where the text of the block begins
        std::int64_t Breaks;  // line breaks that end in front of it
    };
    void AddWithinBlock(std::span<const Byte> bytes);
    std::size_t BlockAt(TextOffset at) const;
    std::string BlockText(std::size_t block) const;

    ClusterChain Source;
    std::vector<Mark> Marks;  // one a block
    std::int64_t Bytes = 0;
    std::int64_t TextSize = 0;
    std::int64_t Breaks = 0;
    bool AfterCr = false;  // the last byte so far is a CR
};

/// The text as a piece of a display; it grows as bytes are added to it.
GeneratedText PlainPiece(const std::shared_ptr<const PlainText>& text);

}  // namespace tessel
