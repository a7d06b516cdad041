#include "screen/display/text/textSearch.h"

#include <algorithm>
#include <functional>

namespace tessel {
namespace {

void FoldCase(std::string& text) {
    // Without a branch: a large part of what a search costs.
    for (char& byte : text) {
        const bool capital = byte >= 'A' && byte <= 'Z';
        byte = static_cast<char>(byte | (capital ? 0x20 : 0));
    }
}

/// Where `needle` stands in `hay`, the last place when `backwards`; -1 when it doesn't.
std::int64_t Find(const std::string& hay, const std::string& needle, bool backwards) {
    if (backwards) {
        const std::boyer_moore_horspool_searcher wanted(needle.rbegin(), needle.rend());
        const auto [from, to] = wanted(hay.rbegin(), hay.rend());
        return from == to ? -1 : hay.rend() - to;
    }
    const std::boyer_moore_horspool_searcher wanted(needle.begin(), needle.end());
    const auto [from, to] = wanted(hay.begin(), hay.end());
    return from == to ? -1 : from - hay.begin();
}

}  // namespace

TextSearch::TextSearch(const TextDisplay& text, SearchQuery query, TextOffset from)
    : Text(text),
      Generation(text.Generation()),
      Sought(std::move(query)),
      Needle(Sought.Text),
      First{},
      Second{},
      Starts(0) {
    if (!Sought.MatchCase) FoldCase(Needle);
    const std::int64_t size = HitSize();
    if (size > 0) Starts = std::max<std::int64_t>(Text.Size() - size + 1, 0);
    if (Sought.Backwards) {
        const TextOffset turn = std::clamp<TextOffset>(from - size + 1, 0, Starts);
        First = {0, turn};
        Second = {turn, Starts};
    } else {
        const TextOffset turn = std::clamp<TextOffset>(from, 0, Starts);
        First = {turn, Starts};
        Second = {0, turn};
    }
}

TextSearch::State TextSearch::Step() {
    if (!HasWrapped && First.From >= First.To) HasWrapped = true;
    Range& range = HasWrapped ? Second : First;
    if (range.From >= range.To) return State::kNone;
    Range part = range;
    if (Sought.Backwards) {
        part.From = std::max(range.From, range.To - kStep);
        range.To = part.From;
    } else {
        part.To = std::min(range.To, range.From + kStep);
        range.From = part.To;
    }
    Done += part.To - part.From;
    return ScanPart(part);
}

TextSearch::State TextSearch::ScanPart(Range part) {
    // A hit may reach over the border of a part, but begins in one only.
    std::string hay = Text.Text(part.From, part.To - part.From + HitSize() - 1);
    if (!Sought.MatchCase) FoldCase(hay);
    const std::int64_t at = Find(hay, Needle, Sought.Backwards);
    if (at < 0) return State::kGoing;
    Found = part.From + at;
    return State::kFound;
}

int TextSearch::Percent() const {
    return Starts == 0 ? 100 : static_cast<int>(Done * 100 / Starts);
}

}  // namespace tessel
