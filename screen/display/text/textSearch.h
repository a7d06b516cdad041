#pragma once

#include <cstdint>
#include <string>

#include "platform/textDisplay.h"

namespace tessel {

/// A search request. `Text` is UTF-8; without MatchCase the letters A to Z equal a to z.
struct SearchQuery {
    std::string Text;
    bool MatchCase = false;
    bool Backwards = false;
    bool operator==(const SearchQuery&) const = default;
};

/// Searches a display's text once, in bounded steps: from an offset to the end of the text, then
/// from its other end. Text appended meanwhile is not searched.
class TextSearch {
  public:
    enum class State { kSearching, kFound, kNone };
    /// The number of offsets that one step examines.
    static constexpr std::int64_t kStep = 1 << 18;

    /// Forwards, hits begin at or after `from`; backwards, they end at or before it.
    TextSearch(const TextDisplay& text, SearchQuery query, TextOffset from);

    const SearchQuery& Query() const { return Wanted; }
    State Step();
    TextOffset Hit() const { return Found; }  ///< after kFound: the offset of the hit
    std::int64_t HitSize() const { return static_cast<std::int64_t>(Wanted.Text.size()); }
    /// The search has continued from the other end of the text.
    bool Wrapped() const { return HasWrapped; }
    int Percent() const;
    /// The text has been replaced since the search began.
    bool IsOutdated() const { return Text.Generation() != Generation; }

  private:
    struct Range {  // of hits that begin at or after From, and before To
        TextOffset From;
        TextOffset To;
    };
    State ScanPart(Range part);

    const TextDisplay& Text;
    std::uint64_t Generation;
    SearchQuery Wanted;
    std::string Needle;  // in lower case unless case matters
    Range First;
    Range Second;
    std::int64_t Starts;  // the number of offsets where a hit can begin
    std::int64_t Done = 0;
    TextOffset Found = 0;
    bool HasWrapped = false;
};

}  // namespace tessel
