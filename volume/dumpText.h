#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/textDisplay.h"
#include "volume/clusterChain.h"

namespace tessel {

/// The text of a chain's bytes as a hexadecimal dump, 16 bytes a line, without holding it. Lines
/// are as long as their cluster's number makes them, so every place is worked out.
class DumpText {
  public:
    explicit DumpText(ClusterChain chain);

    const ClusterChain& Chain() const { return Source; }

    /// Length of the text of the chain's first `bytes` bytes. A line that is not full ends behind
    /// its last byte value.
    std::int64_t SizeOf(std::int64_t bytes) const;
    /// Where the line of byte `byte`, a multiple of 16, begins in the text.
    TextOffset TextOf(std::int64_t byte) const;
    /// The first byte of the line that holds the text at `at`.
    std::int64_t ByteOf(TextOffset at) const;
    /// Appends `count` bytes of the text from `at` on, of which the first `bytes` bytes of the
    /// chain are told.
    void Read(std::int64_t bytes, TextOffset at, std::size_t count, std::string& out) const;

  private:
    struct Segment {
        std::int64_t Byte;  // of the chain
        TextOffset Text;    // of its line
        std::int64_t Line;  // length of each of its lines
    };
    void AppendLines(std::int64_t first, std::span<const Byte> bytes, std::string& out) const;

    ClusterChain Source;
    std::vector<Segment> Segments;  // one a run
    TextOffset DistinctText = 0;    // text of the chain once around
    TextOffset LoopText = 0;        // where the text of a loop begins
};

/// The dump of a chain as a piece of a display that grows: `bytes`, shared with the view that reads
/// the chain, says how much of it there is by now.
GeneratedText DumpPiece(const std::shared_ptr<const DumpText>& text,
                        const std::shared_ptr<const std::int64_t>& bytes);

}  // namespace tessel
