#pragma once

#include <cstdint>
#include <string>

#include "platform/textDisplay.h"

namespace tessel {

/// What is searched for: `Text` is UTF-8; without MatchCase the letters A to Z equal a to z.
struct SearchQuery {
    std::string Text;
    bool MatchCase = false;
    bool Backwards = false;
    bool operator==(const SearchQuery&) const = default;
};

/// A search through a display's text in bounded steps, once around: from a place to the end of the
/// text and on from its other end. Text that is added meanwhile is not looked at.
class TextSearch {
  public:
    enum class State { kGoing, kFound, kNone };
    /// How many places one step looks at.
    static constexpr std::int64_t kStep = 1 << 18;

    /// Forwards, the nearest hit begins at `from` or behind it; backwards, it ends at `from` or in
    /// front of it.
    TextSearch(const TextDisplay& text, SearchQuery query, TextOffset from);

    const SearchQuery& Query() const { return Sought; }
    State Step();
    TextOffset Hit() const { return Found; }  ///< after kFound: where the hit begins
    std::int64_t HitSize() const { return static_cast<std::int64_t>(Sought.Text.size()); }
    /// The search has passed an end of the text.
    bool Wrapped() const { return HasWrapped; }
    int Percent() const;
    /// The display has been given another text since the search began.
    bool IsOutdated() const { return Text.Generation() != Generation; }

  private:
    struct Range {  // hits that begin at From or behind it, and in front of To
        TextOffset From;
        TextOffset To;
    };
    State ScanPart(Range part);

    const TextDisplay& Text;
    std::uint64_t Generation;
    SearchQuery Sought;
    std::string Needle;  // folded when the case does not matter
    Range First;
    Range Second;
    std::int64_t Starts;  // where a hit can begin
    std::int64_t Done = 0;
    TextOffset Found = 0;
    bool HasWrapped = false;
};

}  // namespace tessel
