#include "screen/display/text/textSearch.h"

#include <algorithm>
#include <functional>

namespace tessel {
namespace {

void FoldCase(std::string& text) {
    // Branch-free, because this is a large part of a search's cost.
    for (char& byte : text) {
        const bool capital = byte >= 'A' && byte <= 'Z';
        byte = static_cast<char>(byte | (capital ? 0x20 : 0));
    }
}

/// The position of the first `needle` in `hay`, or with `backwards` of the last; -1 if there is
/// none.
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
      Wanted(std::move(query)),
      Needle(Wanted.Text),
      First{},
      Second{},
      Starts(0) {
    if (!Wanted.MatchCase) FoldCase(Needle);
    const std::int64_t size = HitSize();
    if (size > 0) Starts = std::max<std::int64_t>(Text.Size() - size + 1, 0);
    if (Wanted.Backwards) {
        const TextOffset split = std::clamp<TextOffset>(from - size + 1, 0, Starts);
        First = {0, split};
        Second = {split, Starts};
    } else {
        const TextOffset split = std::clamp<TextOffset>(from, 0, Starts);
        First = {split, Starts};
        Second = {0, split};
    }
}

TextSearch::State TextSearch::Step() {
    if (!HasWrapped && First.From >= First.To) HasWrapped = true;
    Range& range = HasWrapped ? Second : First;
    if (range.From >= range.To) return State::kNone;
    Range part = range;
    if (Wanted.Backwards) {
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
    // A hit may cross the end of a part, but begins in exactly one.
    std::string hay = Text.Text(part.From, part.To - part.From + HitSize() - 1);
    if (!Wanted.MatchCase) FoldCase(hay);
    const std::int64_t at = Find(hay, Needle, Wanted.Backwards);
    if (at < 0) return State::kSearching;
    Found = part.From + at;
    return State::kFound;
}

int TextSearch::Percent() const {
    return Starts == 0 ? 100 : static_cast<int>(Done * 100 / Starts);
}

}  // namespace tessel
