#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/textDisplay.h"
#include "volume/clusterChain.h"

namespace tessel {

/// Generates the hexadecimal dump of a chain, 16 bytes per line, on request. The length of a line
/// depends on the digits of its cluster's number, so offsets are computed run by run.
class DumpText {
  public:
    explicit DumpText(ClusterChain chain);

    const ClusterChain& Chain() const { return Source; }

    /// The length of the text of the chain's first `bytes` bytes. A partial line ends after its
    /// last byte value.
    std::int64_t SizeOf(std::int64_t bytes) const;
    /// The text offset of the line that begins with byte `byte`, a multiple of 16.
    TextOffset TextOf(std::int64_t byte) const;
    /// The first byte of the line that contains the text offset `at`.
    std::int64_t ByteOf(TextOffset at) const;
    /// Fills `text` from the text of the chain's first `bytes` bytes, beginning at offset `at`.
    /// Bytes of the chain that cannot be read count as 0.
    void Read(std::int64_t bytes, TextOffset at, std::span<char> text) const;

  private:
    struct Segment {
        std::int64_t Byte;  // offset of its first byte in the chain
        TextOffset Text;    // offset of its first line in the text
        std::int64_t Line;  // length of each of its lines
    };
    class Excerpt;
    void FormatLines(std::int64_t first, std::span<const Byte> bytes, Excerpt& excerpt) const;

    ClusterChain Source;
    std::vector<Segment> Segments;  // one per run
    TextOffset DistinctText = 0;    // length of the text of all runs
    TextOffset LoopText = 0;        // text offset that a loop returns to
};

/// Returns the dump of a chain as a piece of a display, with a size of 0. `bytes` is the part of
/// the chain that is shown; the view increases it together with the size of the piece.
GeneratedText DumpPiece(const std::shared_ptr<const DumpText>& text,
                        const std::shared_ptr<const std::int64_t>& bytes);

}  // namespace tessel
